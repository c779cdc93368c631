#include "accounts/ui/frmPartyInfo.h"

#include "accounts/AccountRules.h"
#include "accounts/CareOfList.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/Lookups.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenServices.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QEventLoop>
#include <QHeaderView>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableView>

frmPartyInfo::frmPartyInfo(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmPartyInfo"));
    setTitle(QStringLiteral("PARTY INFO"));

    mskPartyCode = addMaskedEdit(QStringLiteral("mskPartyCode"), QStringLiteral("PARTY CODE:"),
                                 MaskedLineEdit::accountCodeMask());
    txtLastCode = addLineEdit(QStringLiteral("txtLastCode"), QStringLiteral("LAST CODE:"));
    txtLastCode->setReadOnly(true);
    txtLastCode->setFocusPolicy(Qt::NoFocus);
    txtLastCode->setMaximumWidth(mskPartyCode->maximumWidth());
    txtPartyName = addLineEdit(QStringLiteral("txtPartyName"), QStringLiteral("PARTY NAME:"));
    txtPartyAddress = addLineEdit(QStringLiteral("txtPartyAddress"), QStringLiteral("ADDRESS:"));
    txtPartyPhone = addLineEdit(QStringLiteral("txtPartyPhone"), QStringLiteral("PHONE #:"));
    txtPartyFax = addLineEdit(QStringLiteral("txtPartyFax"), QStringLiteral("FAX #:"));
    txtPartyEmail = addLineEdit(QStringLiteral("txtPartyEmail"), QStringLiteral("EMAIL:"));
    mskSaleTax = addMaskedEdit(QStringLiteral("mskSaleTax"), QStringLiteral("SALE TAX #:"),
                               MaskedLineEdit::saleTaxNoMask(), 1);
    mskNTN = addMaskedEdit(QStringLiteral("mskNTN"), QStringLiteral("NTN #:"), MaskedLineEdit::taxNoMask(), 1);
    txtDueDays = addLineEdit(QStringLiteral("txtDueDays"), QStringLiteral("DUE DAYS:"), 1);
    txtDueDays->setMaximumWidth(mskPartyCode->maximumWidth());
    cmbCareOf = addComboBox(QStringLiteral("cmbCareOf"), QStringLiteral("CARE OF:"), 1);
    txtPartyDesc = addLineEdit(QStringLiteral("txtPartyDesc"), QStringLiteral("DESCRIPTION:"), 1);
    mskDate = addMaskedEdit(QStringLiteral("mskDate"), QStringLiteral("DATE:"), MaskedLineEdit::dateMask(), 1);
    cmbDBCR = addComboBox(QStringLiteral("cmbDBCR"), QStringLiteral("DR/CR:"), 1);
    cmbDBCR->setMinimumContentsLength(4);
    cmbDBCR->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    txtBalance = addLineEdit(QStringLiteral("txtBalance"), QStringLiteral("BALANCE:"), 1);
    txtBalance->setMaximumWidth(mskSaleTax->maximumWidth());

    cmdPartySave = addButton(QStringLiteral("cmdPartySave"), QStringLiteral("&SAVE"));
    cmdPartyCancel = addButton(QStringLiteral("cmdPartyCancel"), QStringLiteral("&CANCEL"));

    // Made after the buttons so that Tab goes from the balance to Save.
    dgPartyInfo = addGrid(QStringLiteral("dgPartyInfo"));
    dgPartyInfo->setFocusPolicy(Qt::NoFocus);

    // Key filters. The code and tax masks take digits only.
    attachAccountKeys({{mskPartyCode, txtPartyName, txtPartyAddress, txtPartyPhone, txtPartyFax, txtPartyEmail, mskSaleTax,
                        mskNTN, txtDueDays, cmbCareOf, txtPartyDesc, mskDate, cmbDBCR, txtBalance},
                       txtPartyName, txtPartyAddress, txtPartyFax, txtDueDays, txtPartyDesc, txtBalance, cmbCareOf,
                       cmbDBCR});
    txtDueDays->installEventFilter(this);
    txtBalance->installEventFilter(this);

    connect(mskPartyCode, &QLineEdit::textChanged, this, &frmPartyInfo::showLastCode);
    connect(txtPartyName, &QLineEdit::textChanged, this,
            [this](const QString &name) { showSimilarNames(dgPartyInfo, name); });
    connect(cmdPartyCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    m_saveGate = new CommandGate(cmdPartySave, [this] { return ValidateDate(mskDate); }, [this] { save(); });

    loadDefaults();
}

void frmPartyInfo::loadDefaults()
{
    cmbDBCR->addItems({QStringLiteral("DR"), QStringLiteral("CR")});
    cmbDBCR->setCurrentIndex(0);
    txtDueDays->setText(QStringLiteral("0"));
    runSafely(this, [this] {
        // The opening balance belongs on the day the books closed.
        if (const auto closing = Lookups::closingDate(session().db()))
            DateToMaskText(*closing, mskDate);
    });
    reloadCareOf();
}

void frmPartyInfo::reloadCareOf()
{
    // Keep the person chosen for the last account when it is still listed.
    const QString kept = cmbCareOf->currentText();
    LoadCareOfList(cmbCareOf);
    const int at = kept.isEmpty() ? -1 : cmbCareOf->findText(kept);
    if (at >= 0)
        cmbCareOf->setCurrentIndex(at);
}

void frmPartyInfo::onOpened()
{
    reloadCareOf();
    mskPartyCode->setFocus(Qt::OtherFocusReason);
}

void frmPartyInfo::showEvent(QShowEvent *event)
{
    BaseScreen::showEvent(event);
    if (!m_activationHooked) {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget())) {
            connect(sub, &QMdiSubWindow::aboutToActivate, this, &frmPartyInfo::reloadCareOf);
            m_activationHooked = true;
        }
    }
}

void frmPartyInfo::closeEvent(QCloseEvent *event)
{
    BaseScreen::closeEvent(event);
    Q_EMIT closed();
}

bool frmPartyInfo::eventFilter(QObject *watched, QEvent *event)
{
    // Leaving an empty days or balance field puts 0 into it.
    if (event->type() == QEvent::FocusOut && (watched == txtDueDays || watched == txtBalance)) {
        auto *e = static_cast<QLineEdit *>(watched);
        if (e->text().isEmpty())
            e->setText(QStringLiteral("0"));
    }
    return BaseScreen::eventFilter(watched, event);
}

void frmPartyInfo::showLastCode()
{
    runSafely(this, [this] {
        const QString last = Accounts::lastCodeUnder(session().db(), mskPartyCode->maskText());
        if (!last.isEmpty())
            txtLastCode->setText(last);
    });
}

void frmPartyInfo::attachAccountKeys(const AccountKeys &k)
{
    for (QWidget *w : k.enterOrder)
        EnterToTab::attach(w);
    for (QWidget *w : std::initializer_list<QWidget *>{k.name, k.address, k.description, k.careOf})
        SafeTextKey::attach(w);
    FaxFilter::attach(k.fax);
    DigitsOnly::attach(k.dueDays);
    DecimalOnly::attach(k.balance);
    // Within what the columns hold, so no amount is ever cut or wrapped.
    k.dueDays->setMaxLength(5);
    k.balance->setMaxLength(16);
    FocusNextOnKey::attach(k.careOf, k.description);
    FocusNextOnKey::attach(k.side, k.balance);
}

void frmPartyInfo::showSimilarNames(QTableView *grid, const QString &name)
{
    runSafely(grid, [&] {
        fillGrid(grid, Accounts::accountsNamed(session().db(), name),
                 {QStringLiteral("PARTY CODE"), QStringLiteral("PARTY NAME")});
        grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        grid->setColumnWidth(0, 110);
        grid->setColumnWidth(1, 520);
        grid->horizontalHeader()->setStretchLastSection(true);
    });
}

void frmPartyInfo::save()
{
    Accounts::NewAccount a;
    a.code = mskPartyCode->maskText();
    a.name = txtPartyName->text();
    a.address = txtPartyAddress->text();
    a.phone = txtPartyPhone->text();
    a.fax = txtPartyFax->text();
    a.email = txtPartyEmail->text();
    a.description = txtPartyDesc->text();
    a.saleTaxNo = mskSaleTax->maskText();
    a.ntn = mskNTN->maskText();
    a.dueDays = txtDueDays->text().toLongLong();
    a.careOf = cmbCareOf->currentText();
    a.date = mskDate->date();
    a.side = cmbDBCR->currentText();
    if (!txtBalance->text().isEmpty())
        a.balance = Money::parseOrZero(txtBalance->text());

    Outcome result;
    const bool ran = runSafely(this, [&] {
        result = Accounts::createAccount(session().db(), a, session().currentUserName, session().dateToday());
    });
    if (!ran)
        return;
    if (!result.ok) {
        refuse(result);
        return;
    }
    m_lastSavedCode = a.code;
    MessageService::information(this, result.message);
    clearForNext();
    // LAST CODE now names the account just saved, the last of its group.
    runSafely(this, [&] { txtLastCode->setText(Accounts::lastCodeUnder(session().db(), a.code)); });
    mskPartyCode->setFocus(Qt::OtherFocusReason);
}

void frmPartyInfo::clearForNext()
{
    // Care-of, side, date, the last code and the grid stay for the next
    // account.
    for (QLineEdit *e : {txtPartyName, txtPartyAddress, txtPartyPhone, txtPartyFax, txtPartyEmail, txtPartyDesc,
                         txtBalance})
        e->clear();
    {
        // The last code shown stays for the next account of the group.
        const QSignalBlocker keepHint(mskPartyCode);
        mskPartyCode->clearMask();
    }
    mskSaleTax->clearMask();
    mskNTN->clearMask();
    txtDueDays->setText(QStringLiteral("0"));
}

QString frmPartyInfo::addAccountModal(QWidget *parent)
{
    auto *f = new frmPartyInfo(parent);
    f->setWindowFlags(Qt::Dialog);
    f->setWindowModality(Qt::ApplicationModal);
    f->resize(900, 560);
    QEventLoop loop;
    connect(f, &frmPartyInfo::closed, &loop, &QEventLoop::quit);
    f->show();
    f->mskPartyCode->setFocus(Qt::OtherFocusReason);
    loop.exec();
    const QString code = f->lastSavedCode();
    f->deleteLater();
    return code;
}
