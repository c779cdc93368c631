// The statements over all accounts read their totals by their own route
// (all accounts in one pass); for every account and every period they must
// give the very figures the totals of that one account give.
#include "LedgerFixture.h"
#include "support/TestDb.h"

#include <QMap>
#include <QRegularExpression>

namespace {

const QString kColumns = QStringLiteral("PartyCode, OpeningCents, DebitCents, CreditCents, PeriodCents, "
                                        "ClosingCents, PeriodRows");

// Each cell as text, whole numbers without the ".00" one engine adds.
QStringList cells(const Row &r)
{
    static const QRegularExpression wholeNumber(QStringLiteral("^(-?\\d+)\\.0+$"));
    QStringList out;
    for (int i = 0; i < r.columnCount(); ++i) {
        const QString t = r.text(i);
        const auto match = wholeNumber.match(t);
        out << (match.hasMatch() ? match.captured(1) : t);
    }
    return out;
}

} // namespace

class tst_StatementTotals : public QObject
{
    Q_OBJECT

private slots:
    void allAccountsAgreeWithOne_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QDate>("to");
        QTest::addColumn<bool>("noStart");
        for (const char *b : {"sqlite", "postgres"}) {
            const QString backend = QString::fromLatin1(b);
            auto row = [&](const char *name, const QDate &from, const QDate &to, bool noStart = false) {
                QTest::newRow(qPrintable(backend + QLatin1Char(' ') + QLatin1String(name))) << backend << from << to << noStart;
            };
            row("whole year", QDate(2026, 1, 1), QDate(2026, 12, 31));
            row("february", QDate(2026, 2, 1), QDate(2026, 2, 28));
            row("one day", QDate(2026, 3, 3), QDate(2026, 3, 3));
            row("from the start", QDate(1900, 1, 1), QDate(2026, 1, 25));
            row("ends before it starts", QDate(2026, 3, 1), QDate(2026, 2, 1));
            row("no start", QDate(), QDate(2026, 3, 31), true);
        }
    }

    void allAccountsAgreeWithOne()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        QFETCH(bool, noStart);
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        if (noStart)
            db->execute(QStringLiteral("DELETE FROM tblTLClientInfo"));
        db->setReportPeriod(from, to);

        QMap<QString, QStringList> all;
        for (const Row &r : db->select(QStringLiteral("SELECT ") + kColumns + QStringLiteral(" FROM AllAccountPeriodTotals")))
            all.insert(r.text(0), cells(r));
        const QStringList posted = [&] {
            QStringList out;
            for (const Row &r : db->select(QStringLiteral("SELECT DISTINCT RTRIM(PartyCode) FROM tblPartyBalance WHERE VDate <= ?"), {to}))
                out << r.text(0);
            return out;
        }();
        QCOMPARE(all.size(), posted.size());
        if (!from.isValid() || from <= to)
            QVERIFY(!all.isEmpty());

        // Each account's figures, and its balance up to the period's end,
        // listed and asked for alone.
        QMap<QString, QStringList> upto;
        for (const Row &r : db->select(QStringLiteral("SELECT PartyCode, VDate, PartyBalance, PartyDR, PartyCR, DrCr FROM TrialBalanceUptoDate")))
            upto.insert(r.text(0), cells(r));
        QCOMPARE(upto.size(), all.size());
        for (const QString &code : posted) {
            const auto one = db->selectOne(QStringLiteral("SELECT ") + kColumns
                                               + QStringLiteral(" FROM AccountPeriodTotals WHERE PartyCode = ?"),
                                           {code});
            QVERIFY2(one.has_value(), qPrintable(code));
            QCOMPARE(all.value(code), cells(*one));
            const auto alone = db->selectOne(QStringLiteral("SELECT PartyCode, VDate, PartyBalance, PartyDR, PartyCR, DrCr "
                                                            "FROM TrialBalanceUptoDate WHERE PartyCode = ?"),
                                             {code});
            QVERIFY2(alone.has_value(), qPrintable(code));
            QCOMPARE(upto.value(code), cells(*alone));
            // Without a start date the balance up to the end takes every
            // posting up to it, whatever the period views bring forward.
            const Money expected = noStart
                ? db->selectOne(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE RTRIM(PartyCode) = ? AND VDate <= ?"),
                                {code, to})->money(0).value_or(Money())
                : Money::fromCents(one->value(QStringLiteral("ClosingCents")).toString().section(QLatin1Char('.'), 0, 0).toLongLong());
            QCOMPARE(alone->moneyOrZero(QStringLiteral("PartyBalance")), expected);
        }
    }
};

QTEST_GUILESS_MAIN(tst_StatementTotals)
#include "tst_statementtotals.moc"
