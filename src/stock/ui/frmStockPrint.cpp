#include "stock/ui/frmStockPrint.h"

#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using Consumables::Item;

namespace {
SessionConnection &db() { return session().db(); }
} // namespace

frmStockPrint::frmStockPrint(QWidget *parent) : ConsumablesScreen(parent)
{
    setObjectName(QStringLiteral("frmStockPrint"));
    setTitle(QStringLiteral("PRINT STOCK"));
    buttonFrame()->hide();
    QFrame *p = frame(frDetail, QStringLiteral("frOuterViewStock"));
    auto *outer = new QVBoxLayout(p);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(buildOptions(p, QStringLiteral("View")));
    auto *grid = new QGridLayout;
    outer->addLayout(grid);
    FieldGrid fields(grid);
    cmbBrandName = combo(p, QStringLiteral("cmbBrandName"), KeyRules::Kind::SafeText);
    cmbBrandName->setMinimumContentsLength(20);
    cmbType = combo(p, QStringLiteral("cmbType"), KeyRules::Kind::SafeText);
    cmbType->setMinimumContentsLength(20);
    mskDateFrom = masked(p, QStringLiteral("mskDateFrom"), MaskedLineEdit::dateMask());
    mskDateTo = masked(p, QStringLiteral("mskDateTo"), MaskedLineEdit::dateMask());
    fields.put(0, 0, QStringLiteral("BRAND NAME :"), cmbBrandName, 1, true);
    fields.put(0, 1, QStringLiteral("TYPE/COLOUR :"), cmbType, 1, true);
    fields.putFixed(1, 0, QStringLiteral("DATE FROM :"), mskDateFrom, 110);
    fields.putFixed(1, 1, QStringLiteral("DATE TO :"), mskDateTo, 110);
    grid->setColumnStretch(4, 1);
    cmdSearch = button(p, QStringLiteral("cmdSearch"), QStringLiteral("&VIEW"));
    cmdViewCancel = button(p, QStringLiteral("cmdViewCancel"), QStringLiteral("&CANCEL"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"), {cmdSearch, cmdViewCancel}, true));
    outer->addLayout(gridHeading(p, QStringLiteral("STOCK IN HAND"), QStringLiteral("AT THE PRICES OF THE RECEIPTS")));
    dgStockInHand = ScreenBuild::grid(p, QStringLiteral("dgStockInHand"));
    dgStockInHand->setFocusPolicy(Qt::NoFocus);
    proportionalColumns(dgStockInHand, {1800, 1800, 1000, 1000, 1000, 1500});
    amountColumns(dgStockInHand, {5});
    outer->addWidget(dgStockInHand, 1);
    detailLayout()->addWidget(p, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    typingOrder({cmbBrandName, cmbType, mskDateFrom, mskDateTo, cmdSearch, cmdViewCancel}, cmdSearch);
    new CommandGate(cmdSearch, [this] { return check(); }, [this] { search(); });
    connect(cmbBrandName, &QComboBox::currentTextChanged, this, [this] { brandChanged(); });
    connect(cmdViewCancel, &QPushButton::clicked, this, [this] { closeScreen(); });

    const QDate today = session().dateToday();
    mskDateFrom->setDate(QDate(today.year(), 1, 1));
    mskDateTo->setDate(today);
}

void frmStockPrint::onOpened()
{
    itemChanged();
    cmbBrandName->setFocus();
}

void frmStockPrint::itemChanged()
{
    runSafely(this, [&] {
        fillList(cmbBrandName, Consumables::brands(db(), item()));
        showRows(dgStockInHand, Consumables::stockInHand(db(), item()),
                 {QStringLiteral("BRAND NAME"), QStringLiteral("TYPE/COLOUR"), QStringLiteral("RECEIVED"),
                  QStringLiteral("ISSUED"), QStringLiteral("IN HAND"), QStringLiteral("VALUE")});
    });
    brandChanged();
}

void frmStockPrint::brandChanged()
{
    runSafely(this, [&] { fillList(cmbType, Consumables::types(db(), item(), cmbBrandName->currentText())); });
}

bool frmStockPrint::check()
{
    const Outcome r = Consumables::checkReportFields(cmbBrandName->currentText(), cmbType->currentText());
    if (!r)
        return refuse(r);
    return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo);
}

Reports::ReportRequest frmStockPrint::request() const
{
    return Consumables::stockReport(item(), cmbBrandName->currentText(), mskDateFrom->date(), mskDateTo->date(),
                                    mskDateFrom->maskText(), mskDateTo->maskText());
}

void frmStockPrint::search()
{
    cmdSearch->setEnabled(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    Reports::showReport(this, request());
    QApplication::restoreOverrideCursor();
    cmdSearch->setEnabled(true);
}
