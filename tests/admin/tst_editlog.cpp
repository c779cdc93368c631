// The edit log on both engines: what a voucher's save, change and delete
// leave in it, that a rolled-back save leaves nothing, that the database
// refuses to change or delete a log row, that every logged table logs
// through its triggers, the bulk pause, that no password is copied, and
// that an invoice's history holds its lines and its sale voucher alone.
#include "admin/ClosingDate.h"
#include "admin/EditLog.h"
#include "admin/EditLogView.h"
#include "admin/UserAccounts.h"
#include "foundation/EditLogSchema.h"
#include "foundation/Logon.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportFrame.h"
#include "sales/InvoiceStaging.h"
#include "sales/tst_invoicefixture.h"
#include "support/TestDb.h"
#include "vouchers/VoucherFixture.h"

#include <QtTest>

using namespace VoucherFixture;
using TestDb::count;

namespace {

// "PartyDR=110.50; PartyCR=0.00" as a map.
QMap<QString, QString> values(const QString &text)
{
    QMap<QString, QString> out;
    for (const QString &part : text.split(QStringLiteral("; "), Qt::SkipEmptyParts)) {
        const int eq = part.indexOf(QLatin1Char('='));
        out.insert(part.left(eq), part.mid(eq + 1));
    }
    return out;
}

// The day by the database's own clock, which is the one the log keeps.
QDate databaseDay(SessionConnection &db)
{
    return db.scalar(QStringLiteral("SELECT ") + EditLogSchema::todaySql(db.isPostgres())).toDate();
}

QVector<EditLog::Entry> ledgerEntries(SessionConnection &db, const QString &change)
{
    QVector<EditLog::Entry> out;
    for (const EditLog::Entry &e : EditLog::entries(db, {}))
        if (e.tableName == QLatin1String("tblPartyBalance") && e.change == change)
            out << e;
    return out;
}

int logRows(SessionConnection &db) { return count(db, QStringLiteral("SELECT COUNT(*) FROM tblEditLog")); }

} // namespace

class TestEditLog : public QObject
{
    Q_OBJECT

private slots:
    void shownTime_data();
    void shownTime();
    void voucherSaveModifyDelete_data() { TestDb::addBackends(); }
    void voucherSaveModifyDelete();
    void rolledBackSaveLeavesNoRow_data() { TestDb::addBackends(); }
    void rolledBackSaveLeavesNoRow();
    void logRowsAreKept_data();
    void logRowsAreKept();
    void everyLoggedTableLogs_data() { TestDb::addBackends(); }
    void everyLoggedTableLogs();
    void bulkScopeLogsTheStepAlone_data() { TestDb::addBackends(); }
    void bulkScopeLogsTheStepAlone();
    void passwordsAndStampsStayOut_data() { TestDb::addBackends(); }
    void passwordsAndStampsStayOut();
    void invoiceHistory_data() { TestDb::addBackends(); }
    void invoiceHistory();
};

void TestEditLog::voucherSaveModifyDelete()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    auto other = year.connect();
    addAccounts(*db);
    db->setActor(QStringLiteral("CLERK"), QStringLiteral("DESK-1"));
    other->setActor(QStringLiteral("OWNER"), QStringLiteral("DESK-2"));

    const VoucherKey key{QStringLiteral("CP"), 1, kDay};
    const QDate dayBefore = databaseDay(*db);
    QVERIFY(stageAndSave(*db, key,
                         {line("21-10-001", "ELECTRICITY", m("110.5"), "DR"),
                          line("14-10-001", "PAPER HOUSE", m("40"), "DR", QStringLiteral("PAPER"))})
                .ok);
    const QDate dayAfter = databaseDay(*db);
    QVERIFY(dayBefore.isValid());
    const auto inserted = ledgerEntries(*db, QStringLiteral("INSERT"));
    QCOMPARE(inserted.size(), 3); // two lines and the cash row
    for (const EditLog::Entry &e : inserted) {
        QCOMPARE(e.userName, QStringLiteral("CLERK"));
        QCOMPARE(e.workstation, QStringLiteral("DESK-1"));
        QCOMPARE(e.docType, QStringLiteral("CP"));
        QCOMPARE(e.docNo, std::optional<qint64>(1));
        QCOMPARE(e.docDate, kDay);
        QVERIFY2(e.logDate >= dayBefore && e.logDate <= dayAfter, qPrintable(e.logDate.toString(Qt::ISODate)));
        QVERIFY(e.before.isEmpty());
    }
    const auto first = values(inserted[0].after);
    QCOMPARE(first.value(QStringLiteral("PartyCode")), QStringLiteral("21-10-001"));
    QCOMPARE(first.value(QStringLiteral("PartyDR")), QStringLiteral("110.50"));
    QCOMPARE(first.value(QStringLiteral("PartyBalance")), QStringLiteral("110.50"));
    QCOMPARE(first.value(QStringLiteral("VDate")), QStringLiteral("09/03/2026"));
    QCOMPARE(inserted[0].rowKey, first.value(QStringLiteral("SrNo")));
    QCOMPARE(values(inserted[2].after).value(QStringLiteral("PartyCR")), QStringLiteral("150.50"));

    // The change is made on the other workstation: its own user is logged.
    VoucherStaging st(*other);
    st.loadVoucher(key);
    auto lines = st.lines();
    QVERIFY(st.changeLine(lines[0].srNo, key, line("21-10-001", "ELECTRICITY", m("120"), "DR")));
    QVERIFY(st.removeLine(lines[1].srNo));
    QVERIFY(VoucherPosting(*other, QStringLiteral("OWNER"), kToday).saveModified(key, key).ok);

    const auto updated = ledgerEntries(*db, QStringLiteral("UPDATE"));
    QCOMPARE(updated.size(), 2); // the line and the cash row
    const auto lineBefore = values(updated[0].before);
    const auto lineAfter = values(updated[0].after);
    QCOMPARE(updated[0].userName, QStringLiteral("OWNER"));
    QCOMPARE(updated[0].workstation, QStringLiteral("DESK-2"));
    QCOMPARE(lineBefore.value(QStringLiteral("PartyDR")), QStringLiteral("110.50"));
    QCOMPARE(lineAfter.value(QStringLiteral("PartyDR")), QStringLiteral("120.00"));
    QVERIFY(!lineAfter.contains(QStringLiteral("PartyCode"))); // a change lists what it moved
    const auto cashAfter = values(updated[1].after);
    QCOMPARE(cashAfter.value(QStringLiteral("PartyCR")), QStringLiteral("120.00"));
    QCOMPARE(values(updated[1].before).value(QStringLiteral("PartyCR")), QStringLiteral("150.50"));

    const auto removedLine = ledgerEntries(*db, QStringLiteral("DELETE"));
    QCOMPARE(removedLine.size(), 1);
    QCOMPARE(values(removedLine[0].before).value(QStringLiteral("PartyDesc")), QStringLiteral("PAPER"));
    QCOMPARE(values(removedLine[0].before).value(QStringLiteral("PartyDR")), QStringLiteral("40.00"));
    QVERIFY(removedLine[0].after.isEmpty());

    VoucherStaging(*db).loadVoucher(key);
    QVERIFY(VoucherPosting(*db, kUser, kToday).deleteVoucher(key).ok);
    const auto deleted = ledgerEntries(*db, QStringLiteral("DELETE"));
    QCOMPARE(deleted.size(), 3);
    QCOMPARE(values(deleted[1].before).value(QStringLiteral("PartyDR")), QStringLiteral("120.00"));
    QCOMPARE(values(deleted[2].before).value(QStringLiteral("PartyCode")), QStringLiteral("19-10-001"));
    QCOMPARE(deleted[2].userName, QStringLiteral("CLERK"));

    // A document's history: the filter by type and number.
    EditLog::Filter f;
    f.docType = QStringLiteral("CP");
    f.docNo = 1;
    QCOMPARE(EditLog::entries(*db, f).size(), 3 + 2 + 1 + 2);
    f.docNo = 2;
    QVERIFY(EditLog::entries(*db, f).isEmpty());
}

void TestEditLog::rolledBackSaveLeavesNoRow()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const int before = logRows(*db);
    VoucherStaging st(*db);
    const VoucherKey key{QStringLiteral("CR"), 1, kDay};
    qint64 sr = 0;
    st.addLine(key, line("17-10-001", "CRESCENT TEXTILES", m("70"), "CR"), sr);
    bool fired = false;
    db->setStatementHook([&](const QString &sql) {
        if (sql.startsWith(QLatin1String("DELETE FROM tblPartyBalanceEmpty"))) { // after the rows went in
            fired = true;
            throw DbError(QStringLiteral("disk full"), sql);
        }
    });
    QVERIFY_THROWS_EXCEPTION(DbError, VoucherPosting(*db, kUser, kToday).saveNew(key, NumberPolicy::Proposed));
    db->setStatementHook({});
    QVERIFY(fired);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 0);
    QCOMPARE(logRows(*db), before);
}

void TestEditLog::logRowsAreKept_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("statement");
    for (const char *b : {"sqlite", "postgres"}) {
        const QString be = QString::fromLatin1(b);
        QTest::newRow(qPrintable(be + " update")) << be << "UPDATE tblEditLog SET ValuesAfter = 'PartyDR=1.00'";
        QTest::newRow(qPrintable(be + " update of one row")) << be << "UPDATE tblEditLog SET UserName = 'NOBODY' WHERE LogNo = 1";
        QTest::newRow(qPrintable(be + " delete")) << be << "DELETE FROM tblEditLog";
    }
    QTest::newRow("postgres truncate") << "postgres" << "TRUNCATE tblEditLog";
}

void TestEditLog::logRowsAreKept()
{
    QFETCH(QString, statement);
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const int rows = logRows(*db);
    QVERIFY(rows >= 5);
    const QString first = db->scalar(QStringLiteral("SELECT ValuesAfter FROM tblEditLog WHERE LogNo = 1")).toString();
    try {
        db->execute(statement);
        QFAIL("the database let a log row change");
    } catch (const DbError &e) {
        QVERIFY2(e.driverText().contains(QLatin1String(EditLogSchema::kRefusal)), qPrintable(e.driverText()));
    }
    QCOMPARE(logRows(*db), rows);
    QCOMPARE(db->scalar(QStringLiteral("SELECT ValuesAfter FROM tblEditLog WHERE LogNo = 1")).toString(), first);
}

// Each listed table's triggers run on this engine: a row written, changed
// and deleted leaves three log rows naming it.
void TestEditLog::everyLoggedTableLogs()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    for (const EditLogSchema::LoggedTable &t : EditLogSchema::loggedTables()) {
        const Schema::Table *s = Schema::findTable(t.table);
        QVERIFY(s);
        QString text;
        for (const Schema::Column &c : s->columns)
            if (c.type == Schema::Type::Text || c.type == Schema::Type::Key)
                if (!t.quiet.contains(c.name) && !t.secret.contains(c.name) && text.isEmpty())
                    text = c.name;
        if (text.isEmpty())
            continue; // the closing date, below
        const int before = logRows(*db);
        Transaction tx(*db);
        const QString a = QStringLiteral("A"), b = QStringLiteral("B");
        db->execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (?)").arg(t.table, text), {a});
        db->execute(QStringLiteral("UPDATE %1 SET %2 = ? WHERE %2 = ?").arg(t.table, text), {b, a});
        db->execute(QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(t.table, text), {b});
        tx.commit();
        const auto rows = db->select(QStringLiteral("SELECT Change, What, ValuesBefore, ValuesAfter FROM tblEditLog "
                                                    "WHERE TableName = ? AND LogNo > (SELECT MAX(LogNo) - 3 FROM tblEditLog) "
                                                    "ORDER BY LogNo"),
                                     {t.table});
        QVERIFY2(logRows(*db) == before + 3, qPrintable(t.table));
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.at(0).text(0).trimmed(), QStringLiteral("INSERT"));
        QCOMPARE(rows.at(1).text(0).trimmed(), QStringLiteral("UPDATE"));
        QCOMPARE(rows.at(2).text(0).trimmed(), QStringLiteral("DELETE"));
        QCOMPARE(rows.at(0).text(1), t.what);
        QVERIFY2(rows.at(0).text(3).contains(text + QStringLiteral("=A")), qPrintable(rows.at(0).text(3)));
        QCOMPARE(rows.at(1).text(2), text + QStringLiteral("=A"));
        QCOMPARE(rows.at(1).text(3), text + QStringLiteral("=B"));
        QVERIFY(rows.at(2).text(2).contains(text + QStringLiteral("=B")));
    }
    // The closing date is logged as a document of its own, with its date.
    QVERIFY(ClosingDate::set(*db, QDate(2026, 1, 31)).ok);
    EditLog::Filter f;
    f.docType = QStringLiteral("CLOSING DATE");
    const auto closing = EditLog::entries(*db, f);
    QVERIFY(!closing.isEmpty());
    QCOMPARE(closing.last().docDate, QDate(2026, 1, 31));
}

void TestEditLog::bulkScopeLogsTheStepAlone()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    auto other = year.connect();
    addAccounts(*db);
    const int before = logRows(*db);
    {
        Transaction tx(*db);
        EditLog::BulkScope bulk(*db);
        db->execute(QStringLiteral("DELETE FROM tblPartyInfo WHERE PartyCode LIKE '21-%'"));
        EditLog::logStep(*db, QStringLiteral("END YEAR"), std::nullopt, QDate(2026, 12, 31), QString(),
                         QStringLiteral("EXPENSE ACCOUNTS CUT"), QStringLiteral("2 accounts"), QString());
        tx.commit();
    }
    QCOMPARE(logRows(*db), before + 1);
    const EditLog::Entry step = EditLog::entries(*db, {}).last();
    QCOMPARE(step.change, EditLog::stepChange());
    QCOMPARE(step.what, QStringLiteral("EXPENSE ACCOUNTS CUT"));
    QCOMPARE(step.docDate, QDate(2026, 12, 31));
    QVERIFY(!step.docNo);

    // A pause rolled back with its work leaves nothing, and ends.
    {
        Transaction tx(*db);
        EditLog::BulkScope bulk(*db);
        // Meanwhile another workstation is logged as ever.
        other->execute(QStringLiteral("UPDATE tblPartyInfo SET PartyDesc = 'X' WHERE PartyCode = '17-10-001'"));
        EditLog::logStep(*db, QStringLiteral("END YEAR"), 1, QDate(), QString(), QStringLiteral("LOST"), QString(),
                         QString());
    }
    QCOMPARE(logRows(*db), before + 2);
    db->execute(QStringLiteral("UPDATE tblPartyInfo SET PartyDesc = 'Y' WHERE PartyCode = '17-10-001'"));
    QCOMPARE(logRows(*db), before + 3);
    QVERIFY(!db->rowLogPaused());
}

void TestEditLog::passwordsAndStampsStayOut()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const UserAccounts::Actor admin{QStringLiteral("ADMIN"), UserAccounts::administrator()};
    QVERIFY(UserAccounts::createUser(*db, admin, QStringLiteral("CLERK"), QStringLiteral("first pass"),
                                     UserAccounts::commonUser())
                .ok);
    const QString firstHash = db->scalar(QStringLiteral("SELECT Password FROM tblLogon WHERE UserName = 'CLERK'")).toString();
    QVERIFY(UserAccounts::changePassword(*db, admin, QStringLiteral("CLERK"), QString(), QStringLiteral("second"),
                                         QStringLiteral("second"))
                .ok);
    const int rows = logRows(*db);
    QVERIFY(Logon::check(*db, QStringLiteral("CLERK"), QStringLiteral("second")).ok); // stamps the log-on
    QCOMPARE(logRows(*db), rows);

    EditLog::Filter f;
    f.docType = QStringLiteral("USER");
    const auto users = EditLog::entries(*db, f);
    QVector<EditLog::Entry> clerk;
    for (const EditLog::Entry &e : users)
        if (e.rowKey == QLatin1String("CLERK"))
            clerk << e;
    QCOMPARE(clerk.size(), 2);
    QCOMPARE(values(clerk[0].after).value(QStringLiteral("Password")), QStringLiteral("(set)"));
    QCOMPARE(values(clerk[0].after).value(QStringLiteral("UserType")), UserAccounts::commonUser());
    QCOMPARE(clerk[1].change, QStringLiteral("UPDATE"));
    QCOMPARE(clerk[1].after, QStringLiteral("Password=(changed)"));
    const QString secondHash = db->scalar(QStringLiteral("SELECT Password FROM tblLogon WHERE UserName = 'CLERK'")).toString();
    QCOMPARE(count(*db,
                   QStringLiteral("SELECT COUNT(*) FROM tblEditLog WHERE ValuesBefore LIKE ? OR ValuesAfter LIKE ? "
                                  "OR ValuesBefore LIKE ? OR ValuesAfter LIKE ?"),
                   {QLatin1Char('%') + firstHash + QLatin1Char('%'), QLatin1Char('%') + firstHash + QLatin1Char('%'),
                    QLatin1Char('%') + secondHash + QLatin1Char('%'), QLatin1Char('%') + secondHash + QLatin1Char('%')}),
             0);
}

void TestEditLog::shownTime_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a moment") << "2026-11-23 15:31:25" << "23/11/2026 15:31:25";
    QTest::newRow("new year's eve") << "2025-12-31 23:59:59" << "31/12/2025 23:59:59";
    QTest::newRow("not a moment stays as stored") << "whenever" << "whenever";
}

void TestEditLog::shownTime()
{
    QFETCH(QString, stored);
    QFETCH(QString, shown);
    QCOMPARE(EditLogView::shownTime(stored), shown);
}

// An invoice saved, changed (a line changed, one removed, one added, the
// date moved) and deleted: its history holds every change of its lines and
// of its SV voucher's rows, on both dates; not the invoice of the same
// number and date under another title, nor a cash voucher of that number.
// The printed history takes the same rows.
void TestEditLog::invoiceHistory()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    InvoiceFixture::prepareYear(*db);
    using InvoiceFixture::header;
    const QString press = QStringLiteral("PRESS");
    InvoicePosting posting(*db, InvoiceFixture::kUser, InvoiceFixture::kToday);
    const InvoiceHeader first = header(press, 4);
    QVERIFY(posting.saveNew(first, InvoiceFixture::threeLines(), NumberPolicy::Typed).ok);
    QVERIFY(posting.saveNew(header(QStringLiteral("PACKAGING"), 4), InvoiceFixture::threeLines(), NumberPolicy::Typed).ok);
    QVERIFY(stageAndSave(*db, {QStringLiteral("CP"), 4, kDay}, {line("14-10-001", "PAPER HOUSE", m("40"), "DR")}).ok);

    QVector<InvoiceLine> lines = InvoiceStaging(*db).postedLines(first.key);
    QCOMPARE(lines.size(), 3);
    lines[0] = [&] {
        InvoiceLine l = InvoiceFixture::line(QStringLiteral("CREDIT"), QStringLiteral("CARTON"), QStringLiteral("1000"),
                                             QStringLiteral("6"), QStringLiteral("17"));
        l.srNo = lines[0].srNo;
        l.state = LineState::Update;
        return l;
    }();
    lines[1].state = LineState::Delete;
    lines << InvoiceFixture::line(QStringLiteral("CASH"), QStringLiteral("BOX"), QStringLiteral("10"), QStringLiteral("10"));
    const InvoiceHeader moved = header(press, 4, InvoiceFixture::kDay.addDays(5));
    const Outcome changed = posting.saveModified(first.key, moved, lines);
    QVERIFY2(changed.ok, qPrintable(changed.message));
    const Outcome deleted = posting.deleteInvoice(moved.key);
    QVERIFY2(deleted.ok, qPrintable(deleted.message));

    const EditLog::Filter history = EditLogView::historyOf(QStringLiteral("INVOICE"), 4, press);
    const QVector<EditLog::Entry> entries = EditLog::entries(*db, history);
    QSet<QString> seen;
    QSet<QDate> dates;
    for (const EditLog::Entry &e : entries) {
        const QString what = e.tableName + QLatin1Char(' ') + e.change;
        QVERIFY2(e.docTitle == press, qPrintable(what + QLatin1Char(' ') + e.docTitle));
        QCOMPARE(e.docNo, std::optional<qint64>(4));
        QVERIFY2((e.tableName == QLatin1String("tblInvoice") && e.docType == QLatin1String("INVOICE"))
                     || (e.tableName == QLatin1String("tblPartyBalance") && e.docType == QLatin1String("SV")),
                 qPrintable(what + QLatin1Char(' ') + e.docType));
        seen.insert(what);
        dates.insert(e.docDate);
    }
    for (const char *table : {"tblInvoice", "tblPartyBalance"})
        for (const char *change : {"INSERT", "UPDATE", "DELETE"})
            QVERIFY2(seen.contains(QStringLiteral("%1 %2").arg(QLatin1String(table), QLatin1String(change))),
                     table);
    QVERIFY(dates.contains(InvoiceFixture::kDay) && dates.contains(moved.key.date));
    // Every row of the invoice and its voucher, and no other.
    QCOMPARE(int(entries.size()),
             count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEditLog WHERE DocNo = 4 AND DocTitle = 'PRESS' AND "
                                       "((TableName = 'tblInvoice' AND DocType = 'INVOICE') OR "
                                       "(TableName = 'tblPartyBalance' AND DocType = 'SV'))")));

    // The other title's invoice: its three lines and two voucher rows, as saved.
    const QVector<EditLog::Entry> other
        = EditLog::entries(*db, EditLogView::historyOf(QStringLiteral("INVOICE"), 4, QStringLiteral("PACKAGING")));
    QCOMPARE(other.size(), 5);
    for (const EditLog::Entry &e : other)
        QCOMPARE(e.change, QStringLiteral("INSERT"));

    // Printed, the history is the same rows in the same order.
    const Reports::RenderedReport printed = Reports::ReportFrame::render(*db, EditLogView::request(history));
    QCOMPARE(printed.rows.size(), int(entries.size()));
    for (int i = 0; i < entries.size(); ++i)
        QCOMPARE(printed.rows.rows.at(i).integer(QStringLiteral("LogNo")), entries.at(i).logNo);

    // The fields as typed take the type alone: the lines of both titles.
    EditLog::Filter typed;
    QVERIFY(EditLogView::readFilter(QDate(), QDate(), QString(), QStringLiteral("INVOICE"), QStringLiteral("4"), typed).ok);
    for (const EditLog::Entry &e : EditLog::entries(*db, typed))
        QCOMPARE(e.docType, QStringLiteral("INVOICE"));
}

QTEST_GUILESS_MAIN(TestEditLog)
#include "tst_editlog.moc"
