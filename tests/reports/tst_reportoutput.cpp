// What a report puts on paper and in its files: figures never cut, long
// texts wrapped, the "as at" line, the difference in opening balances, the
// voucher on half a sheet with its amount in words, the workbook's cells
// and the CSV's columns; typed selections and the sources a design may
// read.
#include "support/TestDb.h"
#include "LedgerFixture.h"
#include "ReportReadBack.h"
#include "reports/LedgerStatements.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Reports;
using namespace ReportReadBack;
using LedgerFixture::account;
using LedgerFixture::post;

namespace {

const DesignCatalogue kShipped;

const QString kLongNarration = QStringLiteral(
    "DESIGN CHARGES BILLED JOB 4471 FOUR COLOUR CATALOGUE 64 PAGES ART CARD COVER WITH MATT LAMINATION AND SPOT UV ON TITLE");

QString pdfRawText(const RenderedReport &r, const QString &dir)
{
    const QString path = dir + QStringLiteral("/raw.pdf");
    QString error;
    if (!exportPdf(r, path, &error))
        return error;
    return runTool(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), path, QStringLiteral("-")}).simplified();
}

QStringList csvLines(const RenderedReport &r)
{
    return QString::fromUtf8(csvText(r)).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
}

QString csvLineWith(const RenderedReport &r, const QString &key)
{
    for (const QString &l : csvLines(r))
        if (l.contains(key))
            return l;
    return QString();
}

// A customer whose year runs to the edge of the widest figure.
void seedBigLedger(SessionConnection &db)
{
    Transaction tx(db);
    account(db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"));
    account(db, QStringLiteral("20-10-005"), QStringLiteral("DESIGN INCOME"));
    post(db, QStringLiteral("JV"), 0, QDate(2025, 6, 30), QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"),
         QStringLiteral("999999000.00"), QStringLiteral("OPENING BALANCE"));
    post(db, QStringLiteral("JV"), 7, QDate(2025, 8, 2), QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"),
         QStringLiteral("999.99"), kLongNarration);
    post(db, QStringLiteral("JV"), 7, QDate(2025, 8, 2), QStringLiteral("20-10-005"), QStringLiteral("DESIGN INCOME"),
         QStringLiteral("-999.99"), kLongNarration);
    tx.commit();
}

// Two accounts' openings and one balanced voucher; the capital's opening
// only when `balanced`.
void seedOpenings(SessionConnection &db, bool balanced)
{
    Transaction tx(db);
    // Cash and the profit and loss account come with every year.
    account(db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"));
    post(db, QStringLiteral("JV"), 0, QDate(2025, 7, 1), QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"),
         QStringLiteral("10000.50"), QStringLiteral("OPENING BALANCE"));
    post(db, QStringLiteral("JV"), 0, QDate(2025, 7, 1), QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"),
         QStringLiteral("0"), QStringLiteral("OPENING BALANCE"));
    if (balanced)
        post(db, QStringLiteral("JV"), 0, QDate(2025, 7, 1), QStringLiteral("20-01-001"), QStringLiteral("PROFIT AND LOSS ACCOUNT"),
             QStringLiteral("-10000.50"), QStringLiteral("OPENING BALANCE"));
    post(db, QStringLiteral("CR"), 1, QDate(2025, 9, 1), QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"),
         QStringLiteral("2500"), QStringLiteral("RECEIVED"));
    post(db, QStringLiteral("CR"), 1, QDate(2025, 9, 1), QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"),
         QStringLiteral("-2500"), QStringLiteral("RECEIVED"));
    db.execute(QStringLiteral("UPDATE tblTLClientInfo SET SDate = ?, EDate = ?"), {QDate(2025, 7, 1), QDate(2026, 6, 30)});
    tx.commit();
}

ReportRequest statement(const QString &kind)
{
    using namespace LedgerStatements;
    const Period year = Period::of(QDate(2025, 7, 1), QDate(2026, 6, 30));
    if (kind == QLatin1String("period"))
        return trialBalance(TrialBalanceKind::BetweenTwoDates, year);
    if (kind == QLatin1String("upto"))
        return trialBalance(TrialBalanceKind::WithoutContact, year);
    if (kind == QLatin1String("sheet"))
        return balanceSheetUpto(QDate(2026, 6, 30), QStringLiteral("30/06/2026"));
    return balanceSheetAll();
}

} // namespace

class tst_ReportOutput : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!haveTool(QStringLiteral("pdftotext")) || !haveTool(QStringLiteral("unzip")))
            QSKIP("pdftotext and unzip are needed to read the output back");
    }

    // A ledger whose balance reaches 999,999,999.99 with a 120-character
    // narration: every figure and every word on the page; the files keep
    // the figures as figures.
    void ledgerNeverCut_data() { TestDb::addBackends(); }
    void ledgerNeverCut()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        seedBigLedger(*db);
        const auto req = LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, QStringLiteral("17-10-001"),
                                                  QStringLiteral("CRESCENT TEXTILES"),
                                                  LedgerStatements::Period::of(QDate(2025, 7, 1), QDate(2026, 6, 30)));
        const RenderedReport r = ReportFrame::render(*db, req, kShipped);
        QTemporaryDir dir;
        const QString layout = pdfText(r, dir.path());
        QVERIFY2(lineWith(layout, QStringLiteral("TOTAL OF CRESCENT")).contains(QLatin1String("999,999,999.99")), qPrintable(layout));
        QVERIFY(lineWith(layout, QStringLiteral("CLOSING BALANCE")).contains(QLatin1String("999,999,999.99 DR")));
        QVERIFY(!layout.contains(QChar(0x2026))); // nothing elided
        const QString raw = pdfRawText(r, dir.path());
        QVERIFY2(raw.contains(kLongNarration), qPrintable(raw));

        // CSV: the balance's side in a column of its own; the opening and
        // closing lines have no voucher number.
        const QStringList csv = csvLines(r);
        QCOMPARE(csv.value(0), QStringLiteral("DATE,TYPE,V #,REF #,NARRATION,DEBIT,CREDIT,BALANCE,BALANCE DR/CR"));
        QCOMPARE(csvLineWith(r, QStringLiteral("OPENING BALANCE")),
                 QStringLiteral("01/07/2025,,,,OPENING BALANCE,999999000.00,,999999000.00,DR"));
        QVERIFY2(csvLineWith(r, QStringLiteral("CLOSING BALANCE")).startsWith(QLatin1String("30/06/2026,,,,CLOSING BALANCE,")),
                 qPrintable(csvLineWith(r, QStringLiteral("CLOSING BALANCE"))));
        QVERIFY(csvLineWith(r, QStringLiteral("CLOSING BALANCE")).endsWith(QLatin1String(",999999999.99,DR")));
        QCOMPARE(csvLineWith(r, QStringLiteral("DESIGN CHARGES")),
                 QStringLiteral("02/08/2025,JV,7,7,") + kLongNarration + QStringLiteral(",999.99,,999999999.99,DR"));

        // The workbook: numbers and dates as such, headings frozen, the
        // money columns as wide as their widest figure.
        const Sheet s = readSheet(r, dir.path());
        const int caption = sheetRow(s, QStringLiteral("DATE"));
        QVERIFY(caption > 0);
        QCOMPARE(s.frozenRows, caption);
        const int line = sheetRow(s, kLongNarration, QLatin1Char('E'));
        QCOMPARE(s.value(QStringLiteral("F%1").arg(line)).value, QStringLiteral("999.99"));
        QCOMPARE(s.value(QStringLiteral("F%1").arg(line)).type, QString());
        QCOMPARE(s.value(QStringLiteral("A%1").arg(line)).value, QString::number(QDate(1899, 12, 30).daysTo(QDate(2025, 8, 2))));
        QCOMPARE(s.value(QStringLiteral("A%1").arg(line)).format, QStringLiteral("dd/mm/yyyy"));
        QCOMPARE(s.value(QStringLiteral("C%1").arg(line)).value, QStringLiteral("7"));
        QCOMPARE(s.value(QStringLiteral("H%1").arg(line)).value, QStringLiteral("999999999.99"));
        QVERIFY(s.value(QStringLiteral("H%1").arg(line)).format.contains(QLatin1String("DR")));
        const int opening = sheetRow(s, QStringLiteral("OPENING BALANCE"), QLatin1Char('E'));
        QVERIFY(!s.cells.contains(QStringLiteral("C%1").arg(opening))); // no voucher number 0
        const int total = sheetRow(s, QStringLiteral("TOTAL OF CRESCENT TEXTILES"), QLatin1Char('A'));
        QCOMPARE(s.value(QStringLiteral("F%1").arg(total)).value, QStringLiteral("999999999.99"));
        QVERIFY(s.widths.value(6) >= QStringLiteral("999,999,999.99").size());
        QVERIFY(s.widths.value(8) >= QStringLiteral("999,999,999.99 DR").size());
    }

    // The statements say when, and show a difference in the opening
    // balances on the short side, so that their totals agree; no such
    // line when the openings agree.
    void openingDifference_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("balanced");
        QTest::addColumn<QString>("asAt");
        for (const char *backend : {"sqlite", "postgres"})
            for (const bool balanced : {false, true})
                for (const auto &[kind, asAt] : {std::pair{"period", "AS AT 30/06/2026"}, std::pair{"upto", "AS AT 30/06/2026"},
                                                 std::pair{"sheet", "AS AT 30/06/2026"}, std::pair{"all", "AS AT "}})
                    QTest::addRow("%s %s %s", backend, kind, balanced ? "balanced" : "short")
                        << QString::fromLatin1(backend) << QString::fromLatin1(kind) << balanced << QString::fromLatin1(asAt);
    }
    void openingDifference()
    {
        TESSEL_YEAR(year);
        QFETCH(QString, kind);
        QFETCH(bool, balanced);
        QFETCH(QString, asAt);
        auto db = year.connect();
        seedOpenings(*db, balanced);
        const RenderedReport r = ReportFrame::render(*db, statement(kind), kShipped);
        QTemporaryDir dir;
        const QString text = pdfText(r, dir.path());
        QVERIFY2(text.contains(asAt), qPrintable(text));
        const QString diff = lineWith(text, QStringLiteral("DIFFERENCE IN OPENING BALANCES"));
        const QString totalRaw = text.split(QLatin1Char('\n')).filter(QRegularExpression(QStringLiteral("^\\s*TOTAL\\s+\\d"))).value(0);
        const QString total = totalRaw.simplified();
        if (balanced) {
            QVERIFY2(diff.isEmpty(), qPrintable(text));
        } else {
            QCOMPARE(diff, QStringLiteral("DIFFERENCE IN OPENING BALANCES 10,000.50"));
            // On the credit side: after the debit figure in the total line.
            const int col = text.split(QLatin1Char('\n')).filter(QStringLiteral("DIFFERENCE IN OPENING")).value(0).indexOf(QLatin1String("10,000.50"));
            QVERIFY2(col > totalRaw.indexOf(QRegularExpression(QStringLiteral("\\d"))), qPrintable(text));
        }
        // The two sides of the total agree.
        const QStringList figures = total.split(QLatin1Char(' ')).filter(QRegularExpression(QStringLiteral("^[\\d,]+\\.\\d\\d$")));
        QVERIFY2(figures.size() == 2, qPrintable(text));
        QCOMPARE(figures.at(0), figures.at(1));
        const QString csv = QString::fromUtf8(csvText(r));
        QCOMPARE(csv.contains(QLatin1String("DIFFERENCE IN OPENING BALANCES")), !balanced);
    }

    // A period row without a start date: everything up to its end.
    void uptoDateWithoutStart_data() { TestDb::addBackends(); }
    void uptoDateWithoutStart()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        seedOpenings(*db, true);
        db->execute(QStringLiteral("UPDATE tblTLClientInfo SET SDate = NULL, EDate = ?"), {QDate(2026, 6, 30)});
        const RenderedReport r = ReportFrame::render(
            *db, LedgerStatements::trialBalance(LedgerStatements::TrialBalanceKind::WithoutContact, {}), kShipped);
        const QString csv = QString::fromUtf8(csvText(r));
        QVERIFY2(csv.contains(QLatin1String("19-10-001,CASH IN HAND,01/09/2025,12500.50,\r\n")), qPrintable(csv));
        QVERIFY(csv.contains(QLatin1String("\r\nTOTAL,,,12500.50,12500.50")));
    }

    // One voucher on the top half of a portrait sheet, its amount in
    // words under the total.
    void voucherOnHalfPage_data() { TestDb::addBackends(); }
    void voucherOnHalfPage()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        seedOpenings(*db, true);
        ReportRequest req{QStringLiteral("crSingleVoucher"), QStringLiteral("SINGLE VOUCHER")};
        req.conditions << ReportCondition::equal(QStringLiteral("VoucherType"), QStringLiteral("CR"))
                       << ReportCondition::equal(QStringLiteral("VoucherNo"), 1)
                       << ReportCondition::equal(QStringLiteral("VDate"), QDate(2025, 9, 1));
        const RenderedReport r = ReportFrame::render(*db, req, kShipped);
        QCOMPARE(r.pageCount(), 1);
        QCOMPARE(qRound(r.pageSizePoints().width()), 595);
        QCOMPARE(qRound(r.pageSizePoints().height()), 421);
        QTemporaryDir dir;
        const QString text = pdfText(r, dir.path());
        QVERIFY2(text.contains(QLatin1String("AMOUNT IN WORDS: TWO THOUSAND FIVE HUNDRED AND 00/100 ONLY")), qPrintable(text));
        QVERIFY(text.indexOf(QLatin1String("AMOUNT IN WORDS")) > text.indexOf(QLatin1String("TOTAL")));
        QVERIFY(text.indexOf(QLatin1String("AMOUNT IN WORDS")) < text.indexOf(QLatin1String("RECEIVED BY")));
        // The sheet is A4 portrait, the voucher on its top half.
        const QString info = runTool(QStringLiteral("pdfinfo"), {dir.path() + QStringLiteral("/out.pdf")});
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Page size:\\s+595(\\.\\d+)? x 84(2|1\\.89)"))), qPrintable(info));
    }

    void amountInWords_data()
    {
        QTest::addColumn<QString>("amount");
        QTest::addColumn<QString>("words");
        QTest::newRow("zero") << "0" << "ZERO AND 00/100 ONLY";
        QTest::newRow("cents only") << "0.07" << "ZERO AND 07/100 ONLY";
        QTest::newRow("teen") << "13" << "THIRTEEN AND 00/100 ONLY";
        QTest::newRow("hyphen") << "21.50" << "TWENTY-ONE AND 50/100 ONLY";
        QTest::newRow("hundreds") << "100" << "ONE HUNDRED AND 00/100 ONLY";
        QTest::newRow("thousand gap") << "1005.10" << "ONE THOUSAND FIVE AND 10/100 ONLY";
        QTest::newRow("widest") << "999999999.99"
                                << "NINE HUNDRED NINETY-NINE MILLION NINE HUNDRED NINETY-NINE THOUSAND NINE HUNDRED NINETY-NINE AND 99/100 ONLY";
        QTest::newRow("million round") << "2000000" << "TWO MILLION AND 00/100 ONLY";
        QTest::newRow("negative") << "-40" << "MINUS FORTY AND 00/100 ONLY";
    }
    void amountInWords()
    {
        QFETCH(QString, amount);
        QFETCH(QString, words);
        QCOMPARE(Reports::amountInWords(LedgerFixture::money(amount)), words);
    }

    // A selection typed as text takes the field's type: money and counts
    // compare as numbers, dates as dates; a value that does not fit is
    // refused in the same words on both engines.
    void typedSelection_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("where");
        QTest::addColumn<int>("rows");       // -1: refused
        QTest::addColumn<QString>("message");
        for (const char *b : {"sqlite", "postgres"}) {
            const QString be = QString::fromLatin1(b);
            QTest::addRow("%s credit balances", b) << be << "PartyBalance<0" << 2 << "";
            QTest::addRow("%s debit balances", b) << be << "PartyBalance>0" << 1 << "";
            QTest::addRow("%s above a figure", b) << be << "PartyBalance>=9999.5" << 1 << "";
            QTest::addRow("%s ten is more than nine", b) << be << "PartyBalance>9" << 1 << "";
            QTest::addRow("%s date", b) << be << "VDate>=01/09/2025" << 2 << "";
            QTest::addRow("%s text", b) << be << "PartyName=PROFIT AND LOSS ACCOUNT" << 1 << "";
            QTest::addRow("%s no such day", b) << be << "VDate>=31/02/2026" << -1 << "VDate: \"31/02/2026\" is not a date dd/mm/yyyy";
            QTest::addRow("%s text for a number", b) << be << "PartyBalance>abc" << -1 << "PartyBalance: \"abc\" is not a number";
            QTest::addRow("%s text for a date", b) << be << "VDate=yesterday" << -1 << "VDate: \"yesterday\" is not a date dd/mm/yyyy";
        }
    }
    void typedSelection()
    {
        TESSEL_YEAR(year);
        QFETCH(QString, where);
        QFETCH(int, rows);
        QFETCH(QString, message);
        auto db = year.connect();
        seedOpenings(*db, true);
        ReportRequest req{QStringLiteral("crTrialBalanceUptoDate")};
        req.conditions << *ReportCondition::parse(where);
        if (rows >= 0) {
            QCOMPARE(ReportFrame::render(*db, req, kShipped).rows.size(), rows);
            return;
        }
        QString said;
        try {
            ReportFrame::render(*db, req, kShipped);
        } catch (const DesignError &e) {
            said = e.message();
        }
        QCOMPARE(said, message);
    }

    // A design of the user's may read the program's views and the tables
    // of its own designs, nothing else.
    void sourcesOfDesigns_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("users") << "tblLogon" << false;
        QTest::newRow("users in other case") << "TBLLOGON" << false;
        QTest::newRow("settings") << "tblConfig" << false;
        QTest::newRow("ledger table") << "tblPartyBalance" << false;
        QTest::newRow("a view") << "Ledger" << true;
        QTest::newRow("a shipped design's table") << "tblItemCoding" << true;
    }
    void sourcesOfDesigns()
    {
        QFETCH(QString, source);
        QFETCH(bool, allowed);
        TestDb::Year year(QStringLiteral("sqlite"));
        auto db = year.connect();
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("crPeek.json")),
                          QStringLiteral(R"({"source": "%1", "columns": [{"field": "%2"}]})")
                              .arg(source, source == QLatin1String("tblItemCoding") ? QStringLiteral("ItemName") : QStringLiteral("UserName"))
                              .toUtf8()));
        QString said;
        try {
            ReportFrame::render(*db, {QStringLiteral("crPeek")}, DesignCatalogue(dir.path()));
        } catch (const DesignError &e) {
            said = e.message();
        }
        if (allowed && source == QLatin1String("Ledger"))
            QVERIFY2(!said.contains(QLatin1String("reports read only")), qPrintable(said));
        else if (allowed)
            QVERIFY2(said.isEmpty(), qPrintable(said));
        else
            QVERIFY2(said.contains(QStringLiteral("reports read only the program's views and the tables of its own designs; \"%1\" is not one of them").arg(source)),
                     qPrintable(said));
    }

    // The command line: a bad value stops with the message and a non-zero
    // status; money compares as money.
    void commandLineWhere()
    {
        const QString tool = QStringLiteral(TESSEL_BIN_DIR "/tessel-report");
        if (!QFile::exists(tool))
            QSKIP("tessel-report is not built");
        TestDb::Year year(QStringLiteral("sqlite"));
        {
            auto db = year.connect();
            seedOpenings(*db, true);
        }
        QTemporaryDir dir;
        auto run = [&](const QString &where, QString *err) {
            return runReportTool(year.profile().dataDir, dir.path(),
                                 {QStringLiteral("--year"), year.name(), QStringLiteral("--design"), QStringLiteral("crTrialBalanceUptoDate"),
                                  QStringLiteral("--where"), where, QStringLiteral("--out"), dir.filePath(QStringLiteral("tb.csv"))},
                                 err);
        };
        QString err;
        QCOMPARE(run(QStringLiteral("PartyBalance<0"), &err), 0);
        QFile f(dir.filePath(QStringLiteral("tb.csv")));
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray csv = f.readAll();
        QVERIFY2(csv.contains("PROFIT AND LOSS ACCOUNT") && csv.contains("CRESCENT") && !csv.contains("CASH IN HAND"), csv.constData());
        QCOMPARE(run(QStringLiteral("VDate<=31/02/2026"), &err), 1);
        QCOMPARE(err.trimmed(), QStringLiteral("tessel-report: VDate: \"31/02/2026\" is not a date dd/mm/yyyy"));
        QCOMPARE(run(QStringLiteral("PartyBalance=ten"), &err), 1);
        QCOMPARE(err.trimmed(), QStringLiteral("tessel-report: PartyBalance: \"ten\" is not a number"));
    }
};

QTEST_MAIN(tst_ReportOutput)
#include "tst_reportoutput.moc"
