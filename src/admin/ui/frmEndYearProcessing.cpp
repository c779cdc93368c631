#include "admin/ui/frmEndYearProcessing.h"
#include "admin/ui/frmBackup.h"

#include "foundation/AccountYear.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTableView>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

frmEndYearProcessing::frmEndYearProcessing(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmEndYearProcessing"));
    setTitle(QStringLiteral("END YEAR PROCESSING"));

    mskDateFrom = addMaskedEdit(QStringLiteral("mskDateFrom"), QStringLiteral("DATE FROM <:"), MaskedLineEdit::dateMask());
    mskDateTo = addMaskedEdit(QStringLiteral("mskDateTo"), QStringLiteral("DATE TO >:"), MaskedLineEdit::dateMask());
    EnterToTab::attach(mskDateFrom);
    EnterToTab::attach(mskDateTo);

    pgbEndYear = new QProgressBar(detailFrame());
    pgbEndYear->setObjectName(QStringLiteral("pgbEndYear"));
    pgbEndYear->setMinimumWidth(360);
    lblLoading = new QLabel(QStringLiteral("LOADING"), detailFrame());
    lblLoading->setObjectName(QStringLiteral("lblLoading"));
    int row = detailLayout()->rowCount();
    detailLayout()->addWidget(lblLoading, row, 0);
    detailLayout()->addWidget(pgbEndYear, row, 1);

    // The steps, four to a row, in a frame of their own under the dates.
    QFrame *frSteps = ScreenBuild::frame(detailFrame(), QStringLiteral("frSteps"), true);
    auto *grid = new QGridLayout(frSteps);
    int i = 0;
    for (const EndYear::StepInfo &s : EndYear::steps()) {
        QPushButton *b = ScreenBuild::button(frSteps, s.button, s.caption);
        b->setMinimumWidth(120);
        grid->addWidget(b, i / 4, i % 4);
        m_buttons.insert(s.step, b);
        const EndYear::Step step = s.step;
        new CommandGate(b, [this] { return checkPeriod(); }, [this, step] { runStep(step); });
        ++i;
    }
    detailLayout()->addWidget(frSteps, ++row, 0, 1, 2);

    // The next year, made as a copy of this one cut to its first day (DATE FROM).
    QFrame *frNewYear = ScreenBuild::frame(detailFrame(), QStringLiteral("frNewYear"), true);
    auto *ny = new QGridLayout(frNewYear);
    txtNewYear = ScreenBuild::lineEdit(frNewYear, QStringLiteral("txtNewYear"));
    txtNewYear->setMinimumWidth(220);
    chkProfitAndLoss = ScreenBuild::check(frNewYear, QStringLiteral("chkProfitAndLoss"),
                                          QStringLiteral("CARRY PROFIT/LOSS TO 20-01-001"));
    cmdNewYear = ScreenBuild::button(frNewYear, QStringLiteral("cmdNewYear"), QStringLiteral("NEW YEAR"));
    ny->addWidget(ScreenBuild::caption(QStringLiteral("NEW YEAR NAME"), txtNewYear), 0, 0);
    ny->addWidget(txtNewYear, 0, 1);
    ny->addWidget(chkProfitAndLoss, 0, 2);
    ny->addWidget(cmdNewYear, 0, 3);
    dgCarry = ScreenBuild::grid(frNewYear, QStringLiteral("dgCarry"));
    dgCarry->setMinimumHeight(220);
    ny->addWidget(dgCarry, 1, 0, 1, 4);
    detailLayout()->addWidget(frNewYear, ++row, 0, 1, 2);
    new CommandGate(cmdNewYear, [this] { return checkNewYear(); }, [this] { makeNewYear(); });
    packFields();

    cmdAccounts = m_buttons.value(EndYear::Step::Accounts);
    cmdProfitAndLoss = m_buttons.value(EndYear::Step::ProfitAndLoss);
    cmdSale = m_buttons.value(EndYear::Step::Sale);
    cmdStock = m_buttons.value(EndYear::Step::Stock);
    cmdEmployeeStock = m_buttons.value(EndYear::Step::EmployeeStock);
    cmdEmployeeSalary = m_buttons.value(EndYear::Step::EmployeeSalary);
    cmdPostDateCheque = m_buttons.value(EndYear::Step::PostDatedCheque);
    cmdDeliveryChallan = m_buttons.value(EndYear::Step::DeliveryChallan);
    cmdPurchaseOrder = m_buttons.value(EndYear::Step::PurchaseOrder);
    cmdPurchaseStock = m_buttons.value(EndYear::Step::PurchaseStock);
    cmdOtherServices = m_buttons.value(EndYear::Step::OtherServices);

    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);

    pgbEndYear->hide();
    lblLoading->hide();
}

void frmEndYearProcessing::onOpened()
{
    if (txtNewYear->text().isEmpty())
        txtNewYear->setText(NewYear::proposedName(session().db().databaseName()));
    mskDateFrom->setFocus(Qt::OtherFocusReason);
}

bool frmEndYearProcessing::checkPeriod()
{
    if (!ValidateDate(mskDateFrom) || !ValidateDate(mskDateTo))
        return false;
    const Outcome period = EndYear::checkPeriod(mskDateFrom->date(), mskDateTo->date());
    return period ? true : refuse(period);
}

void frmEndYearProcessing::showProgress(int value, int maximum)
{
    pgbEndYear->setMaximum(qMax(1, maximum));
    pgbEndYear->setValue(qMin(value, pgbEndYear->maximum()));
    // Repaint the bar only: no click or key reaches the screen mid-step.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool frmEndYearProcessing::runWithBar(QPushButton *button, const Outcome &out, const std::function<void()> &work)
{
    button->setEnabled(false);
    pgbEndYear->setValue(0);
    pgbEndYear->show();
    lblLoading->show();
    const bool ran = runSafely(this, work);
    button->setEnabled(true);
    pgbEndYear->hide();
    lblLoading->hide();
    if (!ran)
        return false;
    return out.ok || refuse(out);
}

void frmEndYearProcessing::runStep(EndYear::Step step)
{
    const EndYear::Run run{mskDateFrom->date(), mskDateTo->date(), session().currentUserName,
                           session().dateToday()};
    if (!MessageService::askYesNo(this, EndYear::question(step, run.from, run.to)))
        return;
    session().periodFrom = run.from;
    session().periodTo = run.to;
    Outcome out;
    if (!runWithBar(m_buttons.value(step), out, [&] {
            out = EndYear::runStep(session().db(), step, run, [this](int v, int m) { showProgress(v, m); });
        }))
        return;
    MessageService::information(this, out.message);
}

namespace {

NewYear::Request newYearRequest(const QString &name, const QDate &start, bool carryProfit)
{
    NewYear::Request r;
    r.fromYear = session().db().databaseName();
    r.toYear = name.trimmed();
    r.start = start;
    r.carryProfit = carryProfit;
    r.user = session().currentUserName;
    r.today = session().dateToday();
    r.serverPassword = sessionServerPassword();
    return r;
}

} // namespace

bool frmEndYearProcessing::checkNewYear()
{
    if (!ValidateDate(mskDateFrom))
        return false;
    const Outcome out = NewYear::check(newYearRequest(txtNewYear->text(), mskDateFrom->date(), false));
    return out ? true : refuse(out);
}

void frmEndYearProcessing::makeNewYear()
{
    const NewYear::Request r = newYearRequest(txtNewYear->text(), mskDateFrom->date(), chkProfitAndLoss->isChecked());
    if (!MessageService::askYesNo(
            this, QStringLiteral("A new year %1 will be made as a copy of %2 from %3 on, with the balances before it "
                                 "carried; %2 stays as it is. Are you sure?")
                      .arg(r.toYear, r.fromYear, r.start.toString(QStringLiteral("dd/MM/yyyy")))))
        return;
    NewYear::Result result;
    Outcome out;
    if (!runWithBar(cmdNewYear, out, [&] {
            try {
                out = NewYear::make(session().db().profile(), r, result,
                                    [this](int percent, const QString &) { showProgress(percent, 100); });
            } catch (const AccountYear::Error &e) {
                out = Outcome::refusal(e.message(), QStringLiteral("txtNewYear"));
            }
        }))
        return;
    showCarry(result);
    MessageService::information(this, out.message);
}

void frmEndYearProcessing::showCarry(const NewYear::Result &result)
{
    auto *model = new QStandardItemModel(0, 5, dgCarry);
    model->setHorizontalHeaderLabels({QStringLiteral("CODE"), QStringLiteral("ACCOUNT"), QStringLiteral("CLOSING"),
                                      QStringLiteral("OPENING"), QStringLiteral("DIFFERENCE")});
    const auto amount = [](Money m) {
        auto *item = new QStandardItem(m.toDisplayString());
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        return item;
    };
    for (const NewYear::CarryLine &l : result.lines)
        model->appendRow({new QStandardItem(l.code), new QStandardItem(l.name), amount(l.closing), amount(l.opening),
                          amount(l.difference())});
    model->appendRow({new QStandardItem(QString()), new QStandardItem(QStringLiteral("TOTAL")),
                      amount(result.closingTotal), amount(result.openingTotal),
                      amount(result.openingTotal - result.closingTotal)});
    delete dgCarry->model();
    dgCarry->setModel(model);
    dgCarry->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
}
