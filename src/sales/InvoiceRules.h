#pragma once

#include "foundation/LineStaging.h"
#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "sales/InvoiceArithmetic.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <optional>

// The words of the invoice screen.
namespace InvoiceMessages {
inline const QString kNoTerms = QStringLiteral("Term of sale is missing, please enter term of sale");
inline const QString kNoInvoiceNo = QStringLiteral("Invoice # is missing, please enter Invoice #");
inline const QString kNoParty = QStringLiteral("Party name is missing, please select party name");
inline const QString kPartyNotFound = QStringLiteral("Party name not found, please select correct party name");
inline const QString kPartyCodeNotFound = QStringLiteral("Party Code not found, please select correct party name");
inline const QString kNoDescription = QStringLiteral("Description is missing, please enter description");
inline const QString kNoQuantity = QStringLiteral("Quantity is missing, please enter quantity");
inline const QString kNoRate = QStringLiteral("Rate is missing, please enter rate");
inline const QString kBadFigures
    = QStringLiteral("Line amount is not valid, please check quantity, rate and tax percentages");
inline const QString kLineAdded = QStringLiteral("Invoice Item has saved successfully");
inline const QString kLineChanged = QStringLiteral("Party invoice has modified successfully");
inline const QString kLineRemoved = QStringLiteral("Invoice Item has deleted successfully");
inline const QString kEmpty = QStringLiteral("No entry exist in invoice, please enter something then save.");
inline const QString kNothingEntered = QStringLiteral("No entry is till entered, so data can not be saved");
inline const QString kDuplicate = QStringLiteral("Invoice # already exist, duplication is not allowed.");
inline const QString kSaved = QStringLiteral("Invoice has saved successfully");
inline const QString kModified = QStringLiteral("Invoice has modified successfully");
inline const QString kDeleted = QStringLiteral("Invoice has deleted successfully");
inline const QString kDeleteQuestion = QStringLiteral("Are you sure you want to delete this Invoice");
inline const QString kCloseQuestion = QStringLiteral("Are you sure you want to close this Invoice");
inline const QString kNoFinderNo = QStringLiteral("Please enter Invoice #, empty field doesn't show any Invoice");
inline const QString kNotFound = QStringLiteral("No Invoice # found, please enter correct Invoice #");
inline const QString kChangedElsewhere
    = QStringLiteral("This invoice has been changed on another workstation, please open it again");
QString numberMoved(qint64 typed, qint64 saved);
} // namespace InvoiceMessages

// One line of an invoice. The figures are those computed when the line was
// added or changed; the header columns (number, date, party, title, CED,
// DTRE, description code) are the invoice's and are written from its
// header.
struct InvoiceLine
{
    qint64 srNo = 0;
    LineState state = LineState::Insert;
    QString termsOfSale;
    QString description;
    QString poNo;
    QString quantity = QStringLiteral("0");
    QString rate = QStringLiteral("0");
    Money price;
    QString saleTaxRate = QStringLiteral("0");
    Money saleTax;
    Money valueWithTax;
    QString challanNo;
    QString gateEntryNo;
    QString type;
    QString jobNo; // the demand number
    QString cedRate = QStringLiteral("0");
    QString invoiceDesc;
    QString dtre;
    QString weight = QStringLiteral("0");
    QString furtherTaxRate = QStringLiteral("0");
    QString descCode;

    bool isLive() const { return state != LineState::Delete; }
};

// Where an invoice stands: numbers run per title, and the date is part of
// its key.
struct InvoiceKey
{
    QString title;
    qint64 number = 0;
    QDate date;
};

// What the whole invoice shares, as its screen holds it.
struct InvoiceHeader
{
    InvoiceKey key;
    QString partyCode;
    QString partyName;
    QString cedRate = QStringLiteral("0");
    QString dtre;
    QString descCode;
};

struct InvoiceTotals
{
    Money valueExSaleTax;
    Money saleTax;
    Money totalCed;
    Money net;
    bool any = false; // a live line stands
};

namespace InvoiceRules {

inline const QString kSalesCode = QStringLiteral("20-10-002");
inline const QString kSalesName = QStringLiteral("INVOICE BALANCE");
inline const QString kVoucherType = QStringLiteral("SV");

enum class LineCommand { Add, Change, Remove };

// What the line buttons check, as typed.
struct LineEntry
{
    QString termsOfSale;
    QString invoiceNo;
    QString partyName;
    QString partyCode;
    QString description;
    QString quantity;
    QString rate;
};

// The refusal of a line command before the date is read (terms, number),
// and the rest after it; the date lies between them in the screen's order.
Outcome checkLineHead(const LineEntry &e, LineCommand command);
Outcome checkLineTail(const LineEntry &e, LineCommand command);

// The line's figures from its typed values: a refusal when they are not
// numbers or go beyond what an invoice holds.
Outcome computeFigures(InvoiceLine &line);

// The totals the screen shows, over the live lines: the CED total is the
// CED of the value before sale tax at the invoice's CED rate; the net is
// the sum of the lines' values with tax, as the ledger takes it.
InvoiceTotals totals(const QVector<InvoiceLine> &lines, const QString &cedRate);
Money netAmount(const QVector<InvoiceLine> &lines);

// "CASH SALE, CREDIT SALE, ": the terms of the live lines, each once, in
// alphabetical order, each followed by ", " (the last one too).
QString termsList(const QVector<InvoiceLine> &lines);

} // namespace InvoiceRules
