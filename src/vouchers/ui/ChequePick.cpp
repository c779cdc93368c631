#include "vouchers/ui/ChequePick.h"

#include "foundation/Session.h"
#include "foundation/ui/ScreenServices.h"
#include "vouchers/VoucherLookups.h"

#include <QCheckBox>
#include <QComboBox>

ChequePick::ChequePick(QCheckBox *posted, QComboBox *description, QComboBox *number, QObject *parent)
    : QObject(parent), m_posted(posted), m_description(description), m_number(number)
{
    m_description->setEnabled(false);
    m_number->setEnabled(false);
    connect(m_posted, &QCheckBox::toggled, this, [this](bool on) {
        m_description->setEnabled(on);
        m_number->setEnabled(on);
    });
    connect(m_description, &QComboBox::editTextChanged, this, [this](const QString &d) {
        if (d.isEmpty())
            return;
        runSafely(m_description, [&] {
            const auto no = VoucherLookups::openChequeNo(session().db(), d);
            const QSignalBlocker b(m_number);
            m_number->setEditText(no ? QString::number(*no) : QString());
        });
    });
    connect(m_number, &QComboBox::editTextChanged, this, [this](const QString &n) {
        if (n.isEmpty())
            return;
        runSafely(m_number, [&] {
            const auto d = VoucherLookups::openChequeDescription(session().db(), n.toLongLong());
            const QSignalBlocker b(m_description);
            m_description->setEditText(d.value_or(QString()));
        });
    });
}

void ChequePick::load()
{
    runSafely(m_description, [&] {
        QStringList descs, numbers;
        for (const Row &r : VoucherLookups::openCheques(session().db())) {
            descs << r.text(0);
            numbers << r.text(1);
        }
        const QSignalBlocker a(m_description);
        const QSignalBlocker b(m_number);
        const QString d = m_description->currentText();
        const QString n = m_number->currentText();
        fillCombo(m_description, descs);
        fillCombo(m_number, numbers);
        m_description->setEditText(d);
        m_number->setEditText(n);
    });
}

std::optional<ChequeLink> ChequePick::link() const
{
    if (!m_posted->isChecked())
        return std::nullopt;
    return ChequeLink{m_number->currentText().trimmed().toLongLong(), m_description->currentText()};
}
