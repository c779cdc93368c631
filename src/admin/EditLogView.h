#pragma once

#include "admin/EditLog.h"
#include "foundation/Outcome.h"
#include "reports/ReportFrame.h"

#include <QDate>
#include <QString>
#include <QStringList>

class SessionConnection;

// What the edit log's viewer asks without widgets: the filter from the
// fields as typed, the lists of its combos, the printed log's request, and
// what a double click on a row opens.
namespace EditLogView {

namespace Messages {
inline QString badNumber() { return QStringLiteral("Please enter a valid document number"); }
inline QString badPeriod() { return QStringLiteral("The starting date must not be after the ending date"); }
inline QString cannotOpen() { return QStringLiteral("This document cannot be opened from the edit log"); }
} // namespace Messages

// The filter of the fields: dates already checked by the screen (invalid
// for an empty field), the user, the document type and number as typed.
// Refuses a number that is not one and a period that ends before it starts.
Outcome readFilter(const QDate &from, const QDate &to, const QString &user, const QString &docType,
                   const QString &docNo, EditLog::Filter &filter);

// The users and document types the log holds, in order.
QStringList userNames(SessionConnection &db);
QStringList documentTypes(SessionConnection &db);

// The printed log of the filter (design crEditLog), for print and export.
Reports::ReportRequest request(const EditLog::Filter &filter, const QString &fromText = QString(),
                               const QString &toText = QString());

// What a row of the log leads to.
struct Target
{
    enum class Kind {
        Nothing,        // no screen shows it
        Voucher,        // the voucher screen, modify mode (cash, bank, journal, bounced)
        SingleVoucher,  // the ledger's rows of another document (crSingleVoucher)
        Invoice,        // the invoice, by title and number
    };
    Kind kind = Kind::Nothing;
    QString type;
    qint64 number = 0;
    QDate date;
    QString title;
};
Target targetOf(const EditLog::Entry &entry);
// The type of the voucher a document posts under its own number and
// title ("SV" for an invoice); empty for a document that posts none.
QString voucherTypeOf(const QString &docType);

// The filter of one document's history (its type and number, and its
// title when it has one; a document without a number: its type alone).
// A document that posts a voucher of its own brings the ledger rows of
// that voucher along: an invoice's history holds its lines and its SV
// rows, and nothing of another title's invoice of the same number.
EditLog::Filter historyOf(const QString &docType, std::optional<qint64> docNo, const QString &title = QString());

// The moment of a log row as the screens show it: dd/mm/yyyy hh:mm:ss.
QString shownTime(const QString &loggedAt);

} // namespace EditLogView
