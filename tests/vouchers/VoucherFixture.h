#pragma once

// Accounts, lines and saves for the tests of voucher posting, as the
// voucher screen makes them.

#include "foundation/Money.h"
#include "foundation/SessionConnection.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"

#include <QDate>
#include <QString>

namespace VoucherFixture {

inline const QDate kDay(2026, 3, 9);
inline const QString kUser = QStringLiteral("CLERK");
inline const QDate kToday(2026, 3, 10);

inline Money m(const char *text) { return *Money::parse(QString::fromLatin1(text)); }

inline void addAccounts(SessionConnection &db)
{
    const QList<QPair<QString, QString>> accounts = {
        {"17-10-001", "CRESCENT TEXTILES"}, {"14-10-001", "PAPER HOUSE"}, {"21-10-001", "ELECTRICITY"},
        {"21-10-002", "TEA AND REFRESHMENT"}, {"19-20-001", "CITY BANK"}};
    for (const auto &a : accounts)
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {a.first, a.second});
}

inline LineInput line(const QString &code, const QString &name, Money amount, const QString &side,
                      const QString &desc = QStringLiteral("LINE"))
{
    LineInput in;
    in.partyCode = code;
    in.partyName = name;
    in.amount = amount;
    in.side = side;
    in.description = desc;
    return in;
}

// Posts a voucher through staging as the screen does.
inline Outcome stageAndSave(SessionConnection &db, const VoucherKey &key, const QVector<LineInput> &lines,
                                   NumberPolicy policy = NumberPolicy::Proposed)
{
    VoucherStaging st(db);
    st.clear();
    qint64 sr = 0;
    for (const LineInput &l : lines)
        st.addLine(key, l, sr);
    return VoucherPosting(db, kUser, kToday).saveNew(key, policy);
}

} // namespace VoucherFixture
