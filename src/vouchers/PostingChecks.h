#pragma once

#include "foundation/Outcome.h"
#include "vouchers/LedgerWriter.h"

#include <QDate>
#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;

// The words of the refusals a posting makes that no screen field has
// words for already.
namespace PostingMessages {
inline const QString kUnknownType = QStringLiteral("Voucher type is not valid, please select voucher type");
inline const QString kHeading =
    QStringLiteral("A group heading can not take any entry, please select an account");
inline const QString kNegative = QStringLiteral("Amount can not be negative, please enter correct amount");
inline const QString kTwoSides = QStringLiteral("An entry can be either debit or credit, please check your entry");
} // namespace PostingMessages

// What every posting rule checks before it writes a row into the ledger,
// whoever calls it: a known voucher type, a date, the closing date, a real
// account that is not a heading, and one side with no negative amount.
// The checks read the closing date and the accounts in the caller's
// transaction, so what they saw is what the rows are written against.
class PostingChecks
{
public:
    // How the closing date holds for a document.
    enum class Closing {
        AfterClosingDate,   // vouchers: the closing date itself is closed
        FromClosingDate,    // opening balances: stand on the closing date itself
        NotChecked,         // documents whose entry takes any date
    };

    explicit PostingChecks(SessionConnection &db, Closing closing = Closing::AfterClosingDate);

    // Keeps the closing date and the accounts found for the later checks of
    // this object: bulk work inside one transaction checks thousands of
    // vouchers against the same chart.
    void keepLookups(bool keep = true) { m_keep = keep; }

    // The first refusal among the rows, or a pass.
    Outcome check(const QVector<LedgerRow> &rows);
    // The type and date alone: for a voucher that is changed or removed,
    // whose old place in the ledger must be open too.
    Outcome checkVoucher(const QString &type, const QDate &date);

    // The voucher types the ledger knows: CP, CR, BP, BR, BC, JV and the
    // documents' SV, PS, CS, OS.
    static bool isKnownType(const QString &type);
    static bool isHeading(const QString &code);

private:
    Outcome checkDate(const QDate &date);
    Outcome checkAccounts(const QVector<LedgerRow> &rows);

    SessionConnection &m_db;
    Closing m_closing;
    bool m_keep = false;
    bool m_closingRead = false;
    std::optional<QDate> m_closingDate;
    QSet<QString> m_known;   // account codes found, trailing blanks cut
};
