#include "reports/ui/frmPrintVoucher.h"

#include "foundation/ui/CommandGate.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/VoucherPrinting.h"
#include "reports/ui/frmViewReport.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace ScreenBuild;

frmPrintVoucher::frmPrintVoucher(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmPrintVoucher"));
    setTitle(QStringLiteral("PRINT VOUCHER"));

    // One voucher.
    frOuterVoucherNo = new QGroupBox(this);
    frOuterVoucherNo->setObjectName(QStringLiteral("frOuterVoucherNo"));
    auto *g1 = new QGridLayout(frOuterVoucherNo);
    cmbVoucherType = new QComboBox(frOuterVoucherNo);
    cmbVoucherType->setObjectName(QStringLiteral("cmbVoucherType"));
    cmbVoucherType->setEditable(true);
    LettersUpperObj::attach(cmbVoucherType);
    txtShowVoucherNo = new QLineEdit(frOuterVoucherNo);
    txtShowVoucherNo->setObjectName(QStringLiteral("txtShowVoucherNo"));
    DigitsOnly::attach(txtShowVoucherNo);
    mskDate = new MaskedLineEdit(MaskedLineEdit::dateMask(), frOuterVoucherNo);
    mskDate->setObjectName(QStringLiteral("mskDate"));
    g1->addWidget(caption(QStringLiteral("VOUCHER TYPE:"), cmbVoucherType), 0, 0, Qt::AlignRight);
    g1->addWidget(cmbVoucherType, 0, 1);
    g1->addWidget(caption(QStringLiteral("VOUCHER #:"), txtShowVoucherNo), 1, 0, Qt::AlignRight);
    g1->addWidget(txtShowVoucherNo, 1, 1);
    g1->addWidget(caption(QStringLiteral("DATE:"), mskDate), 2, 0, Qt::AlignRight);
    g1->addWidget(mskDate, 2, 1);
    auto *b1 = new QHBoxLayout;
    cmdVoucherNoOkay = button(frOuterVoucherNo, QStringLiteral("cmdVoucherNoOkay"), QStringLiteral("&OK"));
    cmdVoucherNoCancel = button(frOuterVoucherNo, QStringLiteral("cmdVoucherNoCancel"), QStringLiteral("&CANCEL"));
    b1->addStretch(1);
    b1->addWidget(cmdVoucherNoOkay);
    b1->addWidget(cmdVoucherNoCancel);
    g1->addLayout(b1, 3, 0, 1, 2);

    // A listing over a period.
    frOuterVoucherDate = new QGroupBox(this);
    frOuterVoucherDate->setObjectName(QStringLiteral("frOuterVoucherDate"));
    auto *g2 = new QGridLayout(frOuterVoucherDate);
    mskDateFrom = new MaskedLineEdit(MaskedLineEdit::dateMask(), frOuterVoucherDate);
    mskDateFrom->setObjectName(QStringLiteral("mskDateFrom"));
    mskDateTo = new MaskedLineEdit(MaskedLineEdit::dateMask(), frOuterVoucherDate);
    mskDateTo->setObjectName(QStringLiteral("mskDateTo"));
    optSingleVoucher = new QRadioButton(QStringLiteral("SINGLE VOUCHER"), frOuterVoucherDate);
    optSingleVoucher->setObjectName(QStringLiteral("optSingleVoucher"));
    cmbVoucherTypeSingle = new QComboBox(frOuterVoucherDate);
    cmbVoucherTypeSingle->setObjectName(QStringLiteral("cmbVoucherTypeSingle"));
    cmbVoucherTypeSingle->setEditable(true);
    LettersUpperObj::attach(cmbVoucherTypeSingle);
    optAllVouchers = new QRadioButton(QStringLiteral("ALL VOUCHERS"), frOuterVoucherDate);
    optAllVouchers->setObjectName(QStringLiteral("optAllVouchers"));
    optBounceVouchers = new QRadioButton(QStringLiteral("BOUNCE VOUCHERS"), frOuterVoucherDate);
    optBounceVouchers->setObjectName(QStringLiteral("optBounceVouchers"));
    optRecordTracking = new QRadioButton(QStringLiteral("RECORD TRACKING"), frOuterVoucherDate);
    optRecordTracking->setObjectName(QStringLiteral("optRecordTracking"));
    // The options are exclusive, and none is on until the user picks one.
    auto *group = new QButtonGroup(this);
    for (QRadioButton *o : {optSingleVoucher, optAllVouchers, optBounceVouchers, optRecordTracking})
        group->addButton(o);
    g2->addWidget(caption(QStringLiteral("DATE FROM:"), mskDateFrom), 0, 0, Qt::AlignRight);
    g2->addWidget(mskDateFrom, 0, 1);
    g2->addWidget(caption(QStringLiteral("DATE TO:"), mskDateTo), 1, 0, Qt::AlignRight);
    g2->addWidget(mskDateTo, 1, 1);
    g2->addWidget(optSingleVoucher, 2, 0);
    g2->addWidget(cmbVoucherTypeSingle, 2, 1);
    g2->addWidget(optAllVouchers, 3, 0, 1, 2);
    g2->addWidget(optBounceVouchers, 4, 0, 1, 2);
    g2->addWidget(optRecordTracking, 5, 0, 1, 2);
    auto *b2 = new QHBoxLayout;
    cmdDailyVoucherListing = button(frOuterVoucherDate, QStringLiteral("cmdDailyVoucherListing"), QStringLiteral("&SHOW"));
    cmdVoucherCancel = button(frOuterVoucherDate, QStringLiteral("cmdVoucherCancel"), QStringLiteral("&CANCEL"));
    b2->addStretch(1);
    b2->addWidget(cmdDailyVoucherListing);
    b2->addWidget(cmdVoucherCancel);
    g2->addLayout(b2, 6, 0, 1, 2);

    addRow(QString(), frOuterVoucherNo);
    addRow(QString(), frOuterVoucherDate);
    showOnlyButtons({});
    buttonFrame()->hide(); // each panel has its own buttons

    for (QWidget *w : std::initializer_list<QWidget *>{cmbVoucherType, txtShowVoucherNo, mskDate, mskDateFrom, mskDateTo,
                                                        cmbVoucherTypeSingle})
        EnterToTab::attach(w);

    m_okayGate = new CommandGate(cmdVoucherNoOkay, [this] { return checkSingleVoucher(); }, [this] { printSingleVoucher(); });
    m_listingGate = new CommandGate(cmdDailyVoucherListing, [this] { return checkListing(); }, [this] { printListing(); });
    connect(cmdVoucherNoCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(cmdVoucherCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);

    showVoucherNoPanel();
}

void frmPrintVoucher::showVoucherNoPanel()
{
    frOuterVoucherDate->hide();
    frOuterVoucherNo->show();
    cmdVoucherNoOkay->show();
    cmbVoucherType->setFocus();
}

void frmPrintVoucher::showVoucherDatePanel(bool recordTracking)
{
    frOuterVoucherNo->hide();
    frOuterVoucherDate->show();
    cmdDailyVoucherListing->show();
    optRecordTracking->setVisible(recordTracking);
    if (!recordTracking && optRecordTracking->isChecked()) {
        // Leave no hidden option on.
        auto *group = optRecordTracking->group();
        group->setExclusive(false);
        optRecordTracking->setChecked(false);
        group->setExclusive(true);
    }
    mskDateFrom->setFocus();
}

void frmPrintVoucher::onOpened()
{
    load();
}

void frmPrintVoucher::load()
{
    runSafely(this, [this] {
        SessionConnection &db = session().db();
        const QStringList types = VoucherPrinting::voucherTypesInLedger(db);
        cmbVoucherType->clear();
        cmbVoucherTypeSingle->clear();
        cmbVoucherType->addItems(types);
        cmbVoucherTypeSingle->addItems(types);
        cmbVoucherType->setCurrentIndex(-1);
        cmbVoucherTypeSingle->setCurrentIndex(-1);
        const auto first = VoucherPrinting::firstOpenDate(db);
        if (!first) {
            MessageService::critical(this, QStringLiteral("Closing date is missing, please specify closing date"));
            return;
        }
        DateToMaskText(*first, mskDateFrom);
        DateToMaskText(session().dateToday(), mskDateTo);
    });
}

bool frmPrintVoucher::checkSingleVoucher()
{
    if (txtShowVoucherNo->text().trimmed().isEmpty()) {
        MessageService::critical(this, QStringLiteral("Please enter voucher #, empty field doesn't show any voucher"));
        txtShowVoucherNo->setFocus();
        return false;
    }
    if (cmbVoucherType->currentText().trimmed().isEmpty()) {
        MessageService::critical(this, QStringLiteral("Voucher type is missing, please select voucher type"));
        cmbVoucherType->setFocus();
        return false;
    }
    return ValidateDate(mskDate);
}

void frmPrintVoucher::printSingleVoucher()
{
    cmdVoucherNoOkay->setEnabled(false);
    cmbVoucherType->setFocus();
    session().workDate = mskDate->date();
    frOuterVoucherNo->hide();
    Reports::showReport(this, VoucherPrinting::singleVoucher(cmbVoucherType->currentText().trimmed(),
                                                             txtShowVoucherNo->text().trimmed().toLongLong(),
                                                             session().workDate));
    frOuterVoucherNo->show();
    cmdVoucherNoOkay->setEnabled(true);
    cmbVoucherType->setFocus();
}

bool frmPrintVoucher::checkListing()
{
    return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo);
}

void frmPrintVoucher::printListing()
{
    cmdDailyVoucherListing->setEnabled(false);
    mskDateFrom->setFocus();
    session().periodFrom = mskDateFrom->date();
    session().periodTo = mskDateTo->date();
    VoucherPrinting::Listing option = VoucherPrinting::Listing::None;
    if (optSingleVoucher->isChecked())
        option = VoucherPrinting::Listing::SingleType;
    else if (optAllVouchers->isChecked())
        option = VoucherPrinting::Listing::AllVouchers;
    else if (optBounceVouchers->isChecked())
        option = VoucherPrinting::Listing::BounceVouchers;
    else if (optRecordTracking->isChecked() && optRecordTracking->isVisible())
        option = VoucherPrinting::Listing::RecordTracking;
    Reports::showReport(this, VoucherPrinting::listing(option, cmbVoucherTypeSingle->currentText().trimmed(),
                                                       session().periodFrom, session().periodTo,
                                                       mskDateFrom->maskText(), mskDateTo->maskText()));
    cmdDailyVoucherListing->setEnabled(true);
    mskDateFrom->setFocus();
}
