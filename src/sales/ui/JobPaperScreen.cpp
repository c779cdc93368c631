#include "sales/ui/JobPaperScreen.h"

#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

JobPaperScreen::JobPaperScreen(QWidget *parent) : BaseScreen(parent) {}

void JobPaperScreen::addPaperCommands(QComboBox *partyName, MaskedLineEdit *partyCode)
{
    cmdSave = addButton(QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
    cmdModify = addButton(QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = addButton(QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdNew = addButton(QStringLiteral("cmdNew"), QStringLiteral("&NEW"));
    cmdPrint = addButton(QStringLiteral("cmdPrint"), QStringLiteral("&PRINT"));
    cmdAddParty = addButton(QStringLiteral("cmdAddParty"), QStringLiteral("ADD &PARTY"));
    m_partyName = partyName;
    m_pick = new AccountPick(partyName, partyCode, nullptr, this);
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        const QString code = frmPartyInfo::addAccountModal(this);
        m_pick->loadPartyList();
        if (!code.isEmpty())
            m_pick->setCode(code);
        m_partyName->setFocus();
    });
}

void JobPaperScreen::reloadParties()
{
    m_quiet = true;
    m_pick->reload();
    m_quiet = false;
}

void JobPaperScreen::showModeCommands(Mode mode)
{
    QStringList shown{QStringLiteral("cmdNew"), QStringLiteral("cmdPrint"), QStringLiteral("cmdAddParty")};
    if (mode == Mode::Enter)
        shown << QStringLiteral("cmdSave");
    else if (mode == Mode::Modify)
        shown << QStringLiteral("cmdModify");
    else if (mode == Mode::Delete)
        shown << QStringLiteral("cmdDelete");
    showOnlyButtons(shown);
}

void JobPaperScreen::onLeave(QWidget *field, std::function<void()> work)
{
    m_leave.insert(field, std::move(work));
    field->installEventFilter(this);
}

bool JobPaperScreen::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && !m_quiet && isVisible()) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
            const auto it = m_leave.constFind(watched);
            if (it != m_leave.constEnd()) {
                const std::function<void()> work = it.value();
                QMetaObject::invokeMethod(this, [work] { work(); }, Qt::QueuedConnection);
            }
        }
    }
    return BaseScreen::eventFilter(watched, event);
}

void JobPaperScreen::loadTitles(QComboBox *combo)
{
    LoadTitleList(combo);
    const QString current = session().currentTitle.trimmed();
    if (!current.isEmpty() && combo->findText(current) >= 0)
        combo->setCurrentText(current);
}

qint64 JobPaperScreen::numberIn(const QLineEdit *field)
{
    return field->text().trimmed().toLongLong();
}

qint64 JobPaperScreen::recordAt(QTableView *grid, int row)
{
    auto *model = qobject_cast<QueryTableModel *>(grid->model());
    if (!model || row < 0 || row >= model->rowCount())
        return 0;
    return model->rawValue(row, 0).toLongLong();
}

void JobPaperScreen::showRows(QTableView *grid, const QueryResult &rows, const QStringList &captions)
{
    if (auto *model = qobject_cast<QueryTableModel *>(grid->model()))
        model->setResult(rows, captions);
    else
        fillGrid(grid, rows, captions);
}

void JobPaperScreen::print(const Reports::ReportRequest &request)
{
    Reports::showReport(this, request);
}

void JobPaperScreen::confirm(const Outcome &out)
{
    if (!out.notice.isEmpty())
        MessageService::information(this, out.notice);
    MessageService::information(this, out.message);
}

bool JobPaperScreen::write(Outcome &out, const std::function<Outcome()> &work)
{
    if (!runSafely(this, [&] { out = work(); }))
        return false;
    return out || refuse(out);
}
