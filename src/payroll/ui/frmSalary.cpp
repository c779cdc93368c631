#include "payroll/ui/frmSalary.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/DateRules.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

namespace {

SessionConnection &db() { return session().db(); }

const QStringList kGridCaptions = {QStringLiteral("."),       QStringLiteral("EMPLOYEE NAME"),
                                   QStringLiteral("SALARY"),  QStringLiteral("IN DATE"),
                                   QStringLiteral("INC.DATE"), QStringLiteral("STATUS")};

} // namespace

frmSalary::frmSalary(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmSalary"));
    setTitle(QStringLiteral("EMPLOYEE SALARY"));
    setWindowTitle(QStringLiteral("EMPLOYEE SALARY"));

    cmbPartyName = addComboBox(QStringLiteral("cmbPartyName"), QStringLiteral("EMPLOYEE NAME:"));
    cmbPartyName->setMinimumContentsLength(36);
    mskPartyCode = addMaskedEdit(QStringLiteral("mskPartyCode"), QStringLiteral("EMPLOYEE CODE:"),
                                 MaskedLineEdit::accountCodeMask());
    txtSalary = addLineEdit(QStringLiteral("txtSalary"), QStringLiteral("SALARY:"));
    txtSalary->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    txtSalary->setMaxLength(14);
    mskInDate = addMaskedEdit(QStringLiteral("mskInDate"), QStringLiteral("IN DATE:"), MaskedLineEdit::dateMask(), 1);
    mskIncrementDate = addMaskedEdit(QStringLiteral("mskIncrementDate"), QStringLiteral("INCREMENT DATE:"),
                                     MaskedLineEdit::dateMask(), 1);
    cmbStatus = addComboBox(QStringLiteral("cmbStatus"), QStringLiteral("STATUS:"), 1);
    cmbStatus->setEditable(false);
    cmbStatus->addItems(EmployeeRegister::statuses());
    for (QWidget *w : std::initializer_list<QWidget *>{txtSalary, mskInDate, mskIncrementDate, cmbStatus})
        w->setMaximumWidth(160);
    DecimalOnly::attach(txtSalary);
    for (QWidget *w : std::initializer_list<QWidget *>{txtSalary, mskInDate, mskIncrementDate, cmbStatus})
        EnterToTab::attach(w);

    dgVoucher = addGrid(QStringLiteral("dgVoucher"));
    ScreenBuild::proportionalColumns(dgVoucher, {0, 3600, 1500, 1300, 1300, 1200});
    ScreenBuild::amountColumns(dgVoucher, {2});
    dgVoucher->verticalHeader()->hide();

    cmdNew = addButton(QStringLiteral("cmdNew"), QStringLiteral("&NEW"));
    cmdModify = addButton(QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = addButton(QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));

    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);

    new CommandGate(cmdNew, [this] { return entryAllowed(); }, [this] { addEmployee(); });
    new CommandGate(cmdModify, [this] { return entryAllowed(); }, [this] { modifyEmployee(); });
    new CommandGate(cmdDelete, [this] { return entryAllowed(); }, [this] { deleteEmployee(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(dgVoucher, &QTableView::clicked, this, [this](const QModelIndex &i) { loadRow(i.row()); });
    connect(dgVoucher, &QTableView::activated, this, [this](const QModelIndex &i) { loadRow(i.row()); });

    setTabOrder(cmbPartyName, mskPartyCode);
    setTabOrder(mskPartyCode, txtSalary);
    setTabOrder(txtSalary, mskInDate);
    setTabOrder(mskInDate, mskIncrementDate);
    setTabOrder(mskIncrementDate, cmbStatus);
    setTabOrder(cmbStatus, cmdNew);
    startNew();
}

void frmSalary::startNew()
{
    m_mode = Mode::New;
    showOnlyButtons({QStringLiteral("cmdNew"), QStringLiteral("cmdCancel")});
    clearFields();
    cmbPartyName->setFocus();
}

void frmSalary::startModify()
{
    m_mode = Mode::Modify;
    showOnlyButtons({QStringLiteral("cmdModify"), QStringLiteral("cmdDelete"), QStringLiteral("cmdCancel")});
    clearFields();
    dgVoucher->setFocus();
}

void frmSalary::onOpened()
{
    if (!session().connection)
        return;
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_pick->loadPartyList();
        if (!keep.isEmpty())
            setFieldText(cmbPartyName, keep);
    });
    reloadGrid();
}

void frmSalary::reloadGrid()
{
    runSafely(this, [&] {
        qobject_cast<QueryTableModel *>(dgVoucher->model())->setResult(EmployeeRegister::gridRows(db()), kGridCaptions);
    });
}

EmployeeRegister::Entry frmSalary::entry() const
{
    EmployeeRegister::Entry e;
    e.name = cmbPartyName->currentText();
    e.code = mskPartyCode->maskText();
    e.salary = txtSalary->text();
    e.inDate = mskInDate->maskText();
    e.incrementDate = mskIncrementDate->maskText();
    e.status = cmbStatus->currentText();
    return e;
}

bool frmSalary::entryAllowed()
{
    Outcome o;
    if (!runSafely(this, [&] { o = EmployeeRegister::checkEntry(db(), entry()); }))
        return false;
    return o ? true : refuse(o);
}

void frmSalary::afterWrite(const Outcome &out)
{
    if (!out) {
        refuse(out);
        return;
    }
    MessageService::information(this, out.message);
    clearFields();
    reloadGrid();
    cmbPartyName->setFocus();
}

void frmSalary::addEmployee()
{
    Outcome out;
    if (runSafely(this, [&] { out = EmployeeRegister::add(db(), entry()); }))
        afterWrite(out);
}

void frmSalary::modifyEmployee()
{
    Outcome out;
    if (runSafely(this, [&] { out = EmployeeRegister::modify(db(), m_selectedRow, entry()); }))
        afterWrite(out);
}

void frmSalary::deleteEmployee()
{
    Outcome out;
    if (runSafely(this, [&] { out = EmployeeRegister::remove(db(), entry()); }))
        refuse(out);
}

void frmSalary::loadRow(int row)
{
    const auto *model = qobject_cast<QueryTableModel *>(dgVoucher->model());
    if (!model || row < 0 || row >= model->rowCount())
        return;
    std::optional<EmployeeRegister::Employee> e;
    if (!runSafely(this, [&] { e = EmployeeRegister::employee(db(), model->rawValue(row, 0).toLongLong()); }) || !e)
        return;
    m_selectedRow = e->srNo;
    m_pick->setCode(e->code);
    if (cmbPartyName->currentText() != e->name)
        setFieldText(cmbPartyName, e->name);
    mskPartyCode->setMaskText(e->code);
    txtSalary->setText(e->salary.toFieldString());
    mskInDate->setDate(e->inDate);
    mskIncrementDate->setDate(e->incrementDate);
    cmbStatus->setCurrentIndex(qMax(0, cmbStatus->findText(e->status)));
}

void frmSalary::clearFields()
{
    m_selectedRow = 0;
    m_pick->clear();
    mskPartyCode->clearMask();
    txtSalary->clear();
    mskInDate->clearMask();
    mskIncrementDate->clearMask();
    cmbStatus->setCurrentIndex(0);
}
