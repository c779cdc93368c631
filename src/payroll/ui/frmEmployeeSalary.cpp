#include "payroll/ui/frmEmployeeSalary.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "payroll/SalaryReports.h"
#include "reports/ui/frmViewReport.h"
#include "vouchers/ui/VoucherFinder.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;

namespace {

SessionConnection &db() { return session().db(); }

const QStringList kGridCaptions = {QStringLiteral("."),         QStringLiteral("NAME"),    QStringLiteral("SALARY"),
                                   QStringLiteral("TIME"),      QStringLiteral("H.DAYS"),  QStringLiteral("DAYS"),
                                   QStringLiteral("OT.AMOUNT"), QStringLiteral("TOTAL"),   QStringLiteral("ADVANCE"),
                                   QStringLiteral("BALANCE")};

SalarySheet sheet() { return SalarySheet(db(), session().currentUserName, session().dateToday()); }

} // namespace

frmEmployeeSalary::frmEmployeeSalary(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmEmployeeSalary"));
    setTitle(QStringLiteral("EMPLOYEE SALARY"));
    setWindowTitle(QStringLiteral("EMPLOYEE SALARY"));
    buttonFrame()->hide();

    buildSheet();
    frOuterVoucherNo = new VoucherFinder(frDetail);
    frOuterVoucherNo->lblVoucherNo->setText(QStringLiteral("MODIFY SALARY"));
    cmbModifyVoucherType = frOuterVoucherNo->cmbModifyVoucherType;
    txtShowVoucherNo = frOuterVoucherNo->txtShowVoucherNo;
    mskDateModifyVoucher = frOuterVoucherNo->mskDateModifyVoucher;
    cmdVoucherNoOkay = frOuterVoucherNo->cmdVoucherNoOkay;
    cmdVoucherNoCancel = frOuterVoucherNo->cmdVoucherNoCancel;
    frOuterVoucherNo->setTypes({SalarySheet::sheetType()});
    cmbModifyVoucherType->setEditText(SalarySheet::sheetType());
    detailLayout()->addWidget(frOuterVoucherNo, 0, 0, 1, 2, Qt::AlignTop | Qt::AlignHCenter);
    detailLayout()->addWidget(frOuter, 1, 0, 1, 2);
    detailLayout()->setRowStretch(1, 1);
    frOuterVoucherNo->hide();
    wireCommands();
}

void frmEmployeeSalary::buildSheet()
{
    frOuter = frame(frDetail, QStringLiteral("frOuter"));
    QWidget *p = frOuter;
    auto *outer = new QVBoxLayout(p);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(8);
    auto *fieldLayout = new QGridLayout;
    outer->addLayout(fieldLayout);
    FieldGrid fields(fieldLayout);

    using K = KeyRules::Kind;
    cmbVoucherType = combo(p, QStringLiteral("cmbVoucherType"), K::LettersUpper);
    cmbVoucherType->addItem(SalarySheet::sheetType());
    cmbVoucherType->setCurrentText(SalarySheet::sheetType());
    txtVoucherNo = lineEdit(p, QStringLiteral("txtVoucherNo"), K::DigitsOnly);
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(32);
    txtPartyCode = masked(p, QStringLiteral("txtPartyCode"), MaskedLineEdit::accountCodeMask());
    txtPartyCode->setReadOnly(true);
    txtPartyCode->setFocusPolicy(Qt::ClickFocus);
    mskIncrementDate = masked(p, QStringLiteral("mskIncrementDate"), MaskedLineEdit::dateMask());
    mskIncrementDate->setReadOnly(true);
    mskIncrementDate->setFocusPolicy(Qt::NoFocus);
    txtSalary = lineEdit(p, QStringLiteral("txtSalary"), K::DigitsOnly);
    txtTime = amountEdit(p, QStringLiteral("txtTime"));
    txtHoliday = amountEdit(p, QStringLiteral("txtHoliday"));
    txtDay = display(p, QStringLiteral("txtDay"), true);
    txtOTAmount = display(p, QStringLiteral("txtOTAmount"), true);
    txtTotalSalary = display(p, QStringLiteral("txtTotalSalary"), true);
    txtAdvance = lineEdit(p, QStringLiteral("txtAdvance"), K::DigitsOnly);
    txtBalance = display(p, QStringLiteral("txtBalance"), true);
    for (QLineEdit *e : {txtSalary, txtAdvance})
        e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (QLineEdit *e : {txtSalary, txtTime, txtHoliday, txtAdvance})
        e->setMaxLength(12);

    fields.putFixed(0, 0, QStringLiteral("VOUCHER TYPE"), cmbVoucherType, 90);
    fields.putFixed(0, 1, QStringLiteral("VOUCHER #"), txtVoucherNo, 100);
    fields.putFixed(0, 2, QStringLiteral("DATE"), mskDate, 110);
    fields.put(1, 0, QStringLiteral("PARTY NAME"), cmbPartyName, 2, true);
    fields.putFixed(1, 2, QString(), txtPartyCode, 110);
    fields.putFixed(1, 3, QStringLiteral("INCREMENT DATE:"), mskIncrementDate, 110);
    fields.putFixed(2, 0, QStringLiteral("SALARY"), txtSalary, 120);
    fields.putFixed(2, 1, QStringLiteral("TIME"), txtTime, 100);
    fields.putFixed(2, 2, QStringLiteral("LEAVE"), txtHoliday, 100);
    fields.putFixed(2, 3, QStringLiteral("DAY"), txtDay, 110);
    fields.putFixed(3, 0, QStringLiteral("O/T AMOUNT"), txtOTAmount, 120);
    fields.putFixed(3, 1, QStringLiteral("TOTAL SALARY"), txtTotalSalary, 130);
    fields.putFixed(3, 2, QStringLiteral("ADVANCE"), txtAdvance, 110);
    fields.putFixed(3, 3, QStringLiteral("BALANCE:"), txtBalance, 130);
    fieldLayout->setColumnStretch(8, 1);

    cmdNew = button(p, QStringLiteral("cmdNew"), QStringLiteral("&NEW"));
    cmdModify = button(p, QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = button(p, QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdDeleteVoucher = button(p, QStringLiteral("cmdDeleteVoucher"), QStringLiteral("DELETE &VOUCHER"));
    cmdPrint = button(p, QStringLiteral("cmdPrint"), QStringLiteral("&PRINT"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"), {cmdNew, cmdModify, cmdDelete, cmdDeleteVoucher, cmdPrint}));

    outer->addLayout(gridHeading(p, QStringLiteral("EMPLOYEE SALARY"),
                                 QStringLiteral("SELECT A LINE TO MODIFY OR DELETE IT")));
    dgVoucher = grid(p, QStringLiteral("dgVoucher"));
    proportionalColumns(dgVoucher, {0, 1300, 950, 900, 900, 900, 1200, 1200, 1200, 1200});
    amountColumns(dgVoucher, {2, 3, 4, 5, 6, 7, 8, 9}); // hours and days to two places too
    dgVoucher->setMinimumHeight(150);
    outer->addWidget(dgVoucher, 1);

    txtTotal = display(p, QStringLiteral("txtTotal"), true);
    txtTotal->setMaximumWidth(180);
    auto *totalRow = new QHBoxLayout;
    totalRow->addStretch(1);
    totalRow->addWidget(caption(QStringLiteral("TOTAL:"), txtTotal));
    totalRow->addWidget(txtTotal);
    outer->addLayout(totalRow);

    m_pick = new AccountPick(cmbPartyName, txtPartyCode, nullptr, this);

    typingOrder({cmbVoucherType, txtVoucherNo, mskDate, cmbPartyName, txtSalary, txtTime, txtHoliday, txtAdvance,
                 cmdNew, cmdModify, cmdDelete, dgVoucher, cmdDeleteVoucher, cmdPrint},
                cmdNew, {cmbPartyName});
    for (QLineEdit *e : {txtSalary, txtTime, txtHoliday, txtAdvance})
        e->installEventFilter(this);
}

void frmEmployeeSalary::wireCommands()
{
    new CommandGate(cmdNew, [this] { return lineAllowed(Command::Add); }, [this] { addLine(); });
    new CommandGate(cmdModify, [this] { return lineAllowed(Command::Change); }, [this] { changeLine(); });
    new CommandGate(cmdDelete, [this] { return lineAllowed(Command::Delete); }, [this] { deleteLine(); });
    new CommandGate(
        cmdVoucherNoOkay,
        [this] {
            return passes(SalaryRules::checkSheetQuestion(txtShowVoucherNo->text(), mskDateModifyVoucher->maskText(),
                                                          cmbModifyVoucherType->currentText()));
        },
        [this] { openSheet(); });
    connect(cmdDeleteVoucher, &QPushButton::clicked, this, [this] { deleteSheet(); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { printSheet(); });
    connect(cmdVoucherNoCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
    connect(cmbVoucherType, &QComboBox::currentTextChanged, this, [this] {
        if (!m_quiet && m_mode == Mode::New)
            proposeNumber();
    });
    connect(m_pick, &AccountPick::accountChanged, this, [this] { employeePicked(); });
    connect(dgVoucher, &QTableView::clicked, this, [this](const QModelIndex &i) { loadLine(i.row()); });
    connect(dgVoucher, &QTableView::activated, this, [this](const QModelIndex &i) { loadLine(i.row()); });
}

// ------------------------------------------------------------ opening

void frmEmployeeSalary::startNew()
{
    m_mode = Mode::New;
    showSheet(true);
    setWindowTitle(QStringLiteral("EMPLOYEE SALARY"));
    mskDate->setDate(session().dateToday());
    clearFigures();
    m_pick->clear();
    proposeNumber();
    txtTotal->clear();
    rebindGrid();
    mskDate->setFocus();
}

void frmEmployeeSalary::startModify()
{
    m_mode = Mode::Modify;
    showSheet(false);
    setWindowTitle(QStringLiteral("MODIFY SALARY"));
    mskDateModifyVoucher->setDate(session().dateToday());
    txtShowVoucherNo->clear();
    txtShowVoucherNo->setFocus();
}

void frmEmployeeSalary::onOpened()
{
    if (!session().connection)
        return;
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_quiet = true;
        m_pick->setAccounts(sheet().activeEmployees());
        cmbPartyName->setEditText(keep);
        m_quiet = false;
    });
}

void frmEmployeeSalary::showSheet(bool sheetShown)
{
    frOuter->setVisible(sheetShown);
    frOuterVoucherNo->setVisible(!sheetShown);
}

void frmEmployeeSalary::proposeNumber()
{
    // The sheets keep their own series: the next number comes from them,
    // whichever way the type was chosen.
    if (runSafely(this, [&] { txtVoucherNo->setText(QString::number(sheet().nextNumber())); }))
        m_proposedNo = txtVoucherNo->text();
}

SalaryKey frmEmployeeSalary::key() const
{
    SalaryKey k;
    k.type = cmbVoucherType->currentText().trimmed();
    k.number = txtVoucherNo->text().trimmed().toLongLong();
    k.date = mskDate->date();
    return k;
}

// ------------------------------------------------------------ fields

void frmEmployeeSalary::employeePicked()
{
    if (m_quiet)
        return;
    std::optional<SalarySheet::Employee> e;
    runSafely(this, [&] { e = sheet().employeeNamed(cmbPartyName->currentText()); });
    if (!e) {
        txtSalary->setText(QStringLiteral("0"));
        mskIncrementDate->clearMask();
        return;
    }
    txtSalary->setText(e->salary.toFieldString());
    mskIncrementDate->setDate(e->incrementDate);
}

void frmEmployeeSalary::workOutFigures()
{
    for (QLineEdit *e : {txtSalary, txtTime, txtHoliday, txtAdvance})
        if (e->text().trimmed().isEmpty())
            e->setText(SalaryArithmetic::orZero(e->text()));
    const SalaryArithmetic::Figures f =
        SalaryArithmetic::compute({txtSalary->text(), txtTime->text(), txtHoliday->text(), txtAdvance->text()});
    txtDay->setText(f.days.toFieldString());
    txtOTAmount->setText(f.otAmount.toFieldString());
    txtTotalSalary->setText(f.totalSalary.toFieldString());
    txtBalance->setText(f.balance.toFieldString());
}

bool frmEmployeeSalary::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && !m_quiet) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            workOutFigures();
    }
    return BaseScreen::eventFilter(watched, event);
}

void frmEmployeeSalary::clearFigures()
{
    for (QLineEdit *e : {txtSalary, txtTime, txtHoliday, txtDay, txtOTAmount, txtTotalSalary, txtAdvance, txtBalance})
        e->clear();
}

void frmEmployeeSalary::showTotal(const std::optional<Money> &total)
{
    txtTotal->setText(total.value_or(Money()).toFieldString());
}

void frmEmployeeSalary::rebindGrid()
{
    runSafely(this, [&] {
        qobject_cast<QueryTableModel *>(dgVoucher->model())->setResult(sheet().gridRows(key()), kGridCaptions);
    });
}

// ------------------------------------------------------------ lines

bool frmEmployeeSalary::passes(const Outcome &check)
{
    return check ? true : refuse(check);
}

bool frmEmployeeSalary::lineAllowed(Command command)
{
    if (!passes(SalaryRules::checkNumber(txtVoucherNo->text())))
        return false;
    if (!ValidateDate(mskDate) || !CheckClosingDate(mskDate))
        return false;
    return passes(SalaryRules::checkEmployeeFields(cmbPartyName->currentText(), m_pick->code(), txtSalary->text(),
                                                  command != Command::Delete));
}

SalaryLine frmEmployeeSalary::currentLine() const
{
    SalaryLine l;
    l.srNo = m_selectedRow;
    l.employeeCode = m_pick->code();
    l.employeeName = cmbPartyName->currentText().trimmed();
    l.figures = SalaryArithmetic::compute({txtSalary->text(), txtTime->text(), txtHoliday->text(), txtAdvance->text()});
    return l;
}

void frmEmployeeSalary::afterLine(const Outcome &out, const std::optional<Money> &total)
{
    if (!out) {
        refuse(out);
        return;
    }
    showTotal(total);
    if (!out.notice.isEmpty())
        MessageService::information(this, out.notice);
    MessageService::information(this, out.message);
    m_selectedRow = 0;
    clearFigures();
    rebindGrid();
    cmbPartyName->setFocus();
}

void frmEmployeeSalary::addLine()
{
    workOutFigures();
    SalaryKey k = key();
    const bool proposed = m_mode == Mode::New && txtVoucherNo->text() == m_proposedNo;
    Outcome out;
    std::optional<Money> total;
    if (!runSafely(this, [&] { out = sheet().addLine(k, currentLine(), proposed, &total); }))
        return;
    if (out) {
        // The sheet is begun: its number is its own from now on.
        m_proposedNo.clear();
        txtVoucherNo->setText(QString::number(out.number));
    }
    afterLine(out, total);
}

void frmEmployeeSalary::changeLine()
{
    workOutFigures();
    SalaryKey original = key();
    original.date = m_selectedDate;
    Outcome out;
    std::optional<Money> total;
    if (!runSafely(this, [&] { out = sheet().changeLine(original, key(), currentLine(), &total); }))
        return;
    afterLine(out, total);
}

void frmEmployeeSalary::deleteLine()
{
    Outcome out;
    std::optional<Money> total;
    if (!runSafely(this, [&] { out = sheet().deleteLine(key(), m_selectedRow, &total); }))
        return;
    afterLine(out, total);
}

void frmEmployeeSalary::deleteSheet()
{
    if (!MessageService::askYesNoCritical(this, SalaryMessages::kDeleteQuestion))
        return;
    Outcome out;
    if (!runSafely(this, [&] { out = sheet().deleteSheet(key()); }))
        return;
    if (!out) {
        refuse(out);
        return;
    }
    showTotal(std::nullopt);
    m_selectedRow = 0;
    rebindGrid();
}

void frmEmployeeSalary::printSheet()
{
    if (!ValidateDate(mskDate))
        return;
    Reports::showReport(this, SalaryReports::salarySheet(key().number, key().date));
}

void frmEmployeeSalary::loadLine(int row)
{
    const auto *model = qobject_cast<QueryTableModel *>(dgVoucher->model());
    if (!model || row < 0 || row >= model->rowCount())
        return;
    std::optional<SalaryLine> l;
    SalaryKey k;
    if (!runSafely(this, [&] { l = sheet().line(model->rawValue(row, 0).toLongLong(), &k); }) || !l)
        return;
    m_quiet = true;
    m_selectedRow = l->srNo;
    m_selectedDate = k.date;
    cmbVoucherType->setCurrentText(k.type);
    txtVoucherNo->setText(QString::number(k.number));
    mskDate->setDate(k.date);
    m_pick->setCode(l->employeeCode);
    if (cmbPartyName->currentText() != l->employeeName)
        setFieldText(cmbPartyName, l->employeeName);
    txtPartyCode->setMaskText(l->employeeCode);
    const SalaryArithmetic::Figures &f = l->figures;
    txtSalary->setText(f.salary.toFieldString());
    txtTime->setText(f.time.toFieldString());
    txtHoliday->setText(f.holidays.toFieldString());
    txtDay->setText(f.days.toFieldString());
    txtOTAmount->setText(f.otAmount.toFieldString());
    txtTotalSalary->setText(f.totalSalary.toFieldString());
    txtAdvance->setText(f.advance.toFieldString());
    txtBalance->setText(f.balance.toFieldString());
    m_quiet = false;
    txtSalary->setFocus();
}

void frmEmployeeSalary::openSheet()
{
    SalaryKey k;
    k.type = cmbModifyVoucherType->currentText().trimmed();
    k.number = txtShowVoucherNo->text().trimmed().toLongLong();
    k.date = mskDateModifyVoucher->date();
    bool found = false;
    std::optional<Money> total;
    if (!runSafely(this, [&] {
            SalarySheet s = sheet();
            found = s.exists(k);
            total = s.total(k);
        }))
        return;
    if (!found) {
        refuse(Outcome::refusal(SalaryMessages::kNotFound, QStringLiteral("txtShowVoucherNo")));
        return;
    }
    m_quiet = true;
    mskDate->setDate(k.date);
    cmbVoucherType->setCurrentText(k.type);
    txtVoucherNo->setText(QString::number(k.number));
    m_quiet = false;
    m_proposedNo.clear();
    m_selectedRow = 0;
    clearFigures();
    m_pick->clear();
    rebindGrid();
    showTotal(total);
    showSheet(true);
    cmbPartyName->setFocus();
}
