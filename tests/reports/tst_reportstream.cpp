// Long reports written without holding them: the connection's forward
// read, and a PDF (and a CSV) written from rows read a few at a time that
// says on every page what the file of the whole report says.
#include "support/TestDb.h"
#include "LedgerFixture.h"
#include "ReportReadBack.h"
#include "reports/LedgerStatements.h"
#include "reports/PositionReports.h"

#include "reports/ReportStream.h"

#include <QPdfWriter>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Reports;
using namespace ReportReadBack;
using LedgerFixture::voucher;

namespace {

const DesignCatalogue kShipped;

// The seeded year with a cash book long enough for a dozen pages, with
// narrations long enough to wrap.
void seedLongYear(SessionConnection &db)
{
    LedgerFixture::seedYear(db);
    Transaction tx(db);
    QVector<LedgerRow> rows;
    for (int i = 1; i <= 480; ++i) {
        const VoucherKey key{QStringLiteral("CR"), 100 + i, QDate(2026, 3, 1).addDays(i % 200)};
        const Money amount = Money::fromCents(1000 + 7919LL * i % 900001);
        const QString desc = i % 37 == 0 ? QStringLiteral("RECEIVED AGAINST BILLS OF THE QUARTER FOR CATALOGUES, "
                                                          "CALENDARS AND BOXES NUMBER %1").arg(i)
                                         : QStringLiteral("RECEIVED %1").arg(i);
        rows << LedgerRow::debit(key, QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"), amount, desc)
             << LedgerRow::credit(key, QStringLiteral("17-10-001"), QStringLiteral("ALPHA TRADERS"), amount, desc);
    }
    LedgerWriter(db, QStringLiteral("TEST"), QDate(2026, 3, 1)).insertMany(rows);
    tx.commit();
}

// The pages' words as a reader gets them, without the minute printed in
// the footer (the two files are written a moment apart).
QString readable(const QString &path)
{
    static const QRegularExpression printed(QStringLiteral("Printed \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d"));
    return pdfFileText(path).replace(printed, QStringLiteral("Printed"));
}

int pagesOf(const QString &text)
{
    return text.count(QLatin1Char('\f'));
}

} // namespace

class tst_ReportStream : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!haveTool(QStringLiteral("pdftotext")))
            QSKIP("pdftotext is needed to read the output back");
    }

    // The forward read hands over the same rows, columns and values as the
    // whole read, nothing for an empty result, and lets an error through
    // with the connection still usable.
    void forwardRead_data() { TestDb::addBackends(); }
    void forwardRead()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        seedLongYear(*db);
        const QString sql = QStringLiteral("SELECT SrNo, VDate, PartyCode, PartyDR, PartyCR, PartyDesc FROM tblPartyBalance "
                                           "WHERE PartyCode = ? ORDER BY SrNo");
        const QueryResult whole = db->select(sql, {QStringLiteral("19-10-001")});
        QVERIFY(whole.size() > 480);
        QStringList columns;
        int at = 0;
        const qint64 n = db->forEachRow(
            sql, {QStringLiteral("19-10-001")},
            [&](const Row &row) {
                const Row &same = whole.at(at++);
                QCOMPARE(row.integer("SrNo"), same.integer("SrNo"));
                QCOMPARE(row.date("VDate"), same.date("VDate"));
                QCOMPARE(row.money("PartyDR"), same.money("PartyDR"));
                QCOMPARE(row.money("PartyCR"), same.money("PartyCR"));
                QCOMPARE(row.text("PartyDesc"), same.text("PartyDesc"));
            },
            [&](const QStringList &c) { columns = c; });
        QCOMPARE(n, qint64(whole.size()));
        QCOMPARE(at, whole.size());
        QCOMPARE(columns, whole.columns);

        bool started = false;
        QCOMPARE(db->forEachRow(sql, {QStringLiteral("99-99-999")}, [](const Row &) { QFAIL("a row of nothing"); },
                                [&](const QStringList &c) { started = c.size() == 6; }),
                 qint64(0));
        QVERIFY(started);

        QVERIFY_THROWS_EXCEPTION(DbError, db->forEachRow(QStringLiteral("SELECT NoSuchColumn FROM tblPartyBalance"), {},
                                                         [](const Row &) {}));
        // A reader that stops half-way: the read ends, and the next
        // statement runs.
        int seen = 0;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, db->forEachRow(sql, {QStringLiteral("19-10-001")}, [&](const Row &) {
            if (++seen == 10)
                throw std::runtime_error("enough");
        }));
        QCOMPARE(seen, 10);
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"),
                               {QStringLiteral("19-10-001")}),
                 whole.size());
    }

    // Reports of every shape written from the forward read say what the
    // whole report's PDF says, page for page: a ledger of many pages with
    // its running balance and wrapped narrations, a grouped listing, a
    // statement with its totals and the difference line, an empty report.
    void streamedPdfReadsAsWhole_data() { TestDb::addBackends(); }
    void streamedPdfReadsAsWhole()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        seedLongYear(*db);
        const auto period = LedgerStatements::Period::of(QDate(2026, 1, 1), QDate(2026, 12, 31));
        const QVector<QPair<QString, ReportRequest>> requests = {
            {QStringLiteral("cash ledger"),
             LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, QStringLiteral("19-10-001"),
                                      QStringLiteral("CASH IN HAND"), period)},
            {QStringLiteral("trial balance"),
             LedgerStatements::trialBalance(LedgerStatements::TrialBalanceKind::BetweenTwoDates, period)},
            {QStringLiteral("cash book"), PositionReports::cashBook(period)},
            {QStringLiteral("empty ledger"),
             LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, QStringLiteral("21-10-002"),
                                      QStringLiteral("ELECTRICITY"),
                                      LedgerStatements::Period::of(QDate(2026, 11, 1), QDate(2026, 11, 30)))},
        };
        QTemporaryDir dir;
        for (const auto &[name, req] : requests) {
            const QString whole = dir.filePath(name + QStringLiteral(" whole.pdf"));
            const QString streamed = dir.filePath(name + QStringLiteral(" streamed.pdf"));
            const RenderedReport r = ReportFrame::render(*db, req, kShipped);
            QString error;
            QVERIFY2(exportPdf(r, whole, &error), qPrintable(error));
            ReportFrame::WrittenReport written;
            QVERIFY2(ReportFrame::writeFile(*db, req, streamed, kShipped, &error, &written), qPrintable(error));
            QCOMPARE(written.rows, qint64(r.rows.size()));
            QCOMPARE(written.pages, r.pageCount());
            const QString expected = readable(whole);
            QCOMPARE(pagesOf(expected), r.pageCount());
            QVERIFY2(readable(streamed) == expected, qPrintable(name));
            // A CSV written as the rows come holds what the whole report's
            // CSV holds, byte for byte.
            const QString csv = dir.filePath(name + QStringLiteral(".csv"));
            QVERIFY2(ReportFrame::writeFile(*db, req, csv, kShipped, &error, &written), qPrintable(error));
            QCOMPARE(written.rows, qint64(r.rows.size()));
            QFile csvFile(csv);
            QVERIFY(csvFile.open(QIODevice::ReadOnly));
            QCOMPARE(csvFile.readAll(), csvText(r));
        }
        // The cash ledger runs to many pages, or the test proves little.
        QVERIFY(ReportFrame::render(*db, requests.first().second, kShipped).pageCount() >= 10);
    }

    // Every text reads back from the PDF as it was posted, and the page
    // reads as the painter's PDF of the same report: texts with brackets
    // and backslashes, Latin letters with accents, and (left to the
    // painter) characters outside Latin-1.
    void textsAsWritten_data()
    {
        QTest::addColumn<QString>("narration");
        QTest::addColumn<bool>("painter");
        QTest::newRow("plain") << QStringLiteral("RECEIVED AGAINST BILL 12") << false;
        QTest::newRow("brackets") << QStringLiteral("PAID (50%) \\ )(") << false;
        QTest::newRow("accents") << QStringLiteral("CAFÉ ÑANDÚ £5 ½ ÀÖØ ÿ") << false;
        QTest::newRow("dashes and quotes") << QStringLiteral("PAID 5 € – “CASH” ‘A’ … Œ™") << false;
        QTest::newRow("euro") << QStringLiteral("PAID 5 € TO ŁÓDŹ") << true;
        QTest::newRow("cyrillic") << QStringLiteral("RECEIVED ПЕЧАТЬ 7") << true;
    }
    void textsAsWritten()
    {
        QFETCH(QString, narration);
        QFETCH(bool, painter);
        TestDb::Year year(QStringLiteral("sqlite"));
        auto db = year.connect();
        seedLongYear(*db);
        {
            Transaction tx(*db);
            const VoucherKey key{QStringLiteral("CR"), 9001, QDate(2026, 4, 2)};
            const Money amount = Money::fromCents(123456);
            LedgerWriter(*db, QStringLiteral("TEST"), QDate(2026, 3, 1))
                .insertMany({LedgerRow::debit(key, QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"), amount, narration),
                             LedgerRow::credit(key, QStringLiteral("17-10-001"), QStringLiteral("ALPHA TRADERS"), amount, narration)});
            tx.commit();
        }
        const auto req = LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, QStringLiteral("19-10-001"),
                                                  QStringLiteral("CASH IN HAND"),
                                                  LedgerStatements::Period::of(QDate(2026, 1, 1), QDate(2026, 12, 31)));
        QTemporaryDir dir;
        const QString streamed = dir.filePath(QStringLiteral("streamed.pdf"));
        const QString painted = dir.filePath(QStringLiteral("painted.pdf"));
        QString error;
        QVERIFY2(ReportFrame::writeFile(*db, req, streamed, kShipped, &error), qPrintable(error));
        const RenderedReport r = ReportFrame::render(*db, req, kShipped);
        {
            QPdfWriter pdf(painted);
            detail::setUpPdfWriter(pdf, r);
            QVERIFY2(paintReport(r, pdf, &error), qPrintable(error));
        }
        const QString whole = dir.filePath(QStringLiteral("whole.pdf"));
        QVERIFY2(exportPdf(r, whole, &error), qPrintable(error));
        const QString text = readable(streamed);
        QVERIFY2(text.contains(narration), qPrintable(text.mid(text.indexOf(QLatin1String("9001")), 300)));
        QCOMPARE(lineWith(text, QStringLiteral("9001")), lineWith(readable(painted), QStringLiteral("9001")));
        QCOMPARE(text, readable(painted));
        QCOMPARE(readable(whole), text);
        // A reader finds nothing to mend in the file (poppler says so on
        // its error output, whatever its exit status).
        for (const QString &file : {streamed, whole}) {
            QProcess info;
            info.start(QStringLiteral("pdfinfo"), {file});
            QVERIFY(info.waitForFinished(30000));
            QCOMPARE(info.exitCode(), 0);
            QCOMPARE(QString::fromUtf8(info.readAllStandardError()), QString());
        }
        // Texts are set as strings in the report's own fonts, unless a
        // character needs the painter.
        const QString fonts = runTool(QStringLiteral("pdffonts"), {streamed});
        QCOMPARE(fonts.contains(QLatin1String("WinAnsi")), !painter);
    }

    // A file that cannot be written is refused with its reason, before any
    // row is read.
    void unwritableFile()
    {
        QString backend = QStringLiteral("sqlite");
        TestDb::Year year(backend);
        auto db = year.connect();
        int reads = 0;
        db->setStatementHook([&](const QString &sql) { reads += sql.contains(QLatin1String("FROM Ledger")); });
        QString error;
        const auto req = LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, QStringLiteral("19-10-001"),
                                                  QStringLiteral("CASH IN HAND"),
                                                  LedgerStatements::Period::of(QDate(2026, 1, 1), QDate(2026, 12, 31)));
        QVERIFY(!ReportFrame::writeFile(*db, req, QStringLiteral("/nonexistent-folder/ledger.pdf"), kShipped, &error));
        QVERIFY2(error.contains(QLatin1String("ledger.pdf")), qPrintable(error));
        QCOMPARE(reads, 0);
    }

    // A save that fails once the file is begun (the read breaks off) leaves
    // the file already there as it was, and no work file beside it.
    void failedSaveKeepsOldFile_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char *s : {"pdf", "csv", "xlsx"})
            QTest::newRow(s) << QString::fromLatin1(s);
    }
    void failedSaveKeepsOldFile()
    {
        QFETCH(QString, suffix);
        TestDb::Year year(QStringLiteral("sqlite"));
        auto db = year.connect();
        seedLongYear(*db);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("ledger.") + suffix);
        {
            QFile old(path);
            QVERIFY(old.open(QIODevice::WriteOnly));
            old.write("LAST MONTH'S LEDGER");
        }
        db->setStatementHook([](const QString &sql) {
            if (sql.contains(QLatin1String("FROM Ledger")))
                throw std::runtime_error("connection lost");
        });
        const auto req = LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, QStringLiteral("19-10-001"),
                                                  QStringLiteral("CASH IN HAND"),
                                                  LedgerStatements::Period::of(QDate(2026, 1, 1), QDate(2026, 12, 31)));
        QString error;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, ReportFrame::writeFile(*db, req, path, kShipped, &error));
        QFile kept(path);
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("LAST MONTH'S LEDGER"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("ledger.") + suffix});

        // Once the read succeeds the file is replaced.
        db->setStatementHook({});
        QVERIFY2(ReportFrame::writeFile(*db, req, path, kShipped, &error), qPrintable(error));
        QVERIFY(QFileInfo(path).size() > 100);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("ledger.") + suffix});
    }
};

QTEST_MAIN(tst_ReportStream)
#include "tst_reportstream.moc"
