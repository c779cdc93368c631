// The printed papers of a job: each design rendered from the request its
// screen makes, exported to PDF and read back.
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "reports/ReportReadBack.h"
#include "support/TestDb.h"

#include "accounts/TitleList.h"
#include "sales/DeliveryChallanRules.h"
#include "sales/JobCardRules.h"
#include "sales/JobPaperPrinting.h"
#include "sales/PurchaseOrderRules.h"

using JobPaper::Numbering;
using namespace ReportReadBack;

namespace {

const QDate kDay(2026, 3, 10);
const QString kTitle = QStringLiteral("ALPHA PRINTERS");

Money m(const char *s) { return *Money::parse(QString::fromLatin1(s)); }

void fill(SessionConnection &db)
{
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName, PartyAddress) "
                              "VALUES ('17-10-001', 'CRESCENT TEXTILES', 'PLOT 9 SITE AREA')"));
    QVERIFY(TitleList::add(db, kTitle).ok);
    TitleList::Letterhead l;
    l.titleName = kTitle;
    l.companyName = QStringLiteral("ALPHA PRINTERS AND PACKAGES");
    l.companyAddress = QStringLiteral("12 PRESS ROAD");
    l.companySaleTaxNo = QStringLiteral("STN-4455");
    QVERIFY(TitleList::saveLetterhead(db, l).ok);
    // Another title's order and challan under the same numbers: not printed.
    QVERIFY(TitleList::add(db, QStringLiteral("BETA")).ok);

    struct Item { const char *desc; const char *qty; const char *price; const char *demand; };
    for (const QString &title : {kTitle, QStringLiteral("BETA")}) {
        int i = 0;
        for (const Item &it : {Item{"PRODUCT CARTON 4 COLOUR", "1500", "12.25", "D-30"},
                               Item{"LEAFLET A4", "2000.5", "0.80", "D-10"}}) {
            OrderLine o;
            o.titleName = title;
            o.poNo = 1;
            o.date = kDay;
            o.partyPONo = QStringLiteral("KP-77");
            o.partyCode = QStringLiteral("17-10-001");
            o.partyName = QStringLiteral("CRESCENT TEXTILES");
            o.description = title == kTitle ? QString::fromLatin1(it.desc) : QStringLiteral("OTHER TITLE ITEM");
            o.quantity = m(it.qty);
            o.unitPrice = m(it.price);
            o.demandNo = QString::fromLatin1(it.demand);
            o.jobNo = QStringLiteral("SI-5");
            QVERIFY(PurchaseOrderRules::saveLine(db, o, i++ ? Numbering::Existing : Numbering::Proposed).ok);
            ChallanLine c;
            c.titleName = title;
            c.challanNo = 1;
            c.date = kDay;
            c.partyCode = o.partyCode;
            c.partyName = o.partyName;
            c.partyPONo = o.partyPONo;
            c.description = o.description;
            c.demandNo = o.demandNo;
            c.quantity = o.quantity;
            c.ctn = QStringLiteral("4");
            c.gateEntryNo = QStringLiteral("GE-88");
            QVERIFY(DeliveryChallanRules::saveLine(db, c, i == 1 ? Numbering::Proposed : Numbering::Existing, kDay).ok);
        }
    }
    JobCard card;
    card.number = 1;
    card.partyCode = QStringLiteral("17-10-001");
    card.partyName = QStringLiteral("CRESCENT TEXTILES");
    card.partyPONo = QStringLiteral("KP-77");
    card.date = kDay;
    card.poDate = kDay;
    card.quantity = QStringLiteral("1500");
    card.press = {{QStringLiteral("Paper"), QStringLiteral("ART CARD 300G")},
                  {QStringLiteral("Machine"), QStringLiteral("HEIDELBERG SM 74")},
                  {QStringLiteral("Lamination"), QStringLiteral("MATT")}};
    QVERIFY(JobCardRules::save(db, card, Numbering::Proposed, QStringLiteral("CLERK"), kDay).ok);
}

QString printed(SessionConnection &db, const Reports::ReportRequest &req, int *rows = nullptr)
{
    Reports::RenderedReport r = Reports::ReportFrame::render(db, req, Reports::DesignCatalogue());
    if (rows)
        *rows = r.rows.size();
    QTemporaryDir dir;
    const QString text = pdfText(r, dir.path());
    if (!qEnvironmentVariableIsEmpty("TESSEL_TEST_PDF_DIR"))
        Reports::exportPdf(r, QStringLiteral("%1/%2-%3.pdf").arg(qEnvironmentVariable("TESSEL_TEST_PDF_DIR"), req.design,
                                                             req.copyCaption), nullptr);
    return text;
}

} // namespace

class TestJobPaperDesigns : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void papers_data() { TestDb::addBackends(); }
    void papers();
};

void TestJobPaperDesigns::papers()
{
    if (!haveTool(QStringLiteral("pdftotext")))
        QSKIP("pdftotext is not installed");
    TESSEL_YEAR(year);
    auto db = year.connect();
    fill(*db);
    int rows = 0;

    const QString po = printed(*db, JobPaperPrinting::purchaseOrder(*db, kTitle, 1, kDay), &rows);
    QCOMPARE(rows, 2);
    for (const char *s : {"ALPHA PRINTERS AND PACKAGES", "STN-4455", "PURCHASE ORDER", "CRESCENT TEXTILES",
                          "PLOT 9 SITE AREA", "KP-77", "10/03/2026", "PRODUCT CARTON 4 COLOUR", "D-30", "SI-5",
                          "18,375.00", "1,600.40", "19,975.40", "NINETEEN THOUSAND"})
        QVERIFY2(po.contains(QLatin1String(s)), s);
    QVERIFY(!po.contains(QLatin1String("OTHER TITLE ITEM")));
    QVERIFY(lineWith(po, QStringLiteral("LEAFLET A4")).contains(QLatin1String("2,000.5")));

    const QString bare = printed(*db, JobPaperPrinting::purchaseOrder(*db, kTitle, 1, kDay, false));
    QVERIFY(bare.contains(QLatin1String("PRODUCT CARTON 4 COLOUR")));
    QVERIFY(!bare.contains(QLatin1String("12.25")));
    QVERIFY(!bare.contains(QLatin1String("18,375.00")));
    // Another date is another order.
    printed(*db, JobPaperPrinting::purchaseOrder(*db, kTitle, 1, kDay.addDays(1)), &rows);
    QCOMPARE(rows, 0);

    const QString card = printed(*db, JobPaperPrinting::jobCard(*db, 1, kTitle), &rows);
    QCOMPARE(rows, JobCardRules::pressColumns().size() + 1);
    for (const char *s : {"ALPHA PRINTERS AND PACKAGES", "JOB CARD", "CRESCENT TEXTILES", "KP-77", "ART CARD 300G",
                          "HEIDELBERG SM 74", "OTHER PROCESS"})
        QVERIFY2(card.contains(QLatin1String(s)), s);
    QVERIFY(lineWith(card, QStringLiteral("LAMINATION")).contains(QLatin1String("MATT")));

    for (const QString &copy : {QStringLiteral("ORIGINAL"), QStringLiteral("DUPLICATE")}) {
        const QString dc = printed(*db, JobPaperPrinting::deliveryChallan(*db, kTitle, 1, kDay, copy), &rows);
        QCOMPARE(rows, 2);
        for (const char *s : {"ALPHA PRINTERS AND PACKAGES", "DELIVERY CHALLAN", "CRESCENT TEXTILES", "GE-88",
                              "PRODUCT CARTON 4 COLOUR", "3,500.5"})
            QVERIFY2(dc.contains(QLatin1String(s)), s);
        QVERIFY(dc.contains(copy));
        QVERIFY(!dc.contains(QLatin1String("OTHER TITLE ITEM")));
        QVERIFY(dc.indexOf(QLatin1String("PRODUCT CARTON")) < dc.indexOf(QLatin1String("LEAFLET A4")));
    }
    // The same challan by demand number: D-10 before D-30.
    const QString byDemand =
        printed(*db, JobPaperPrinting::deliveryChallan(*db, kTitle, 1, kDay, QStringLiteral("ORIGINAL"), true));
    QVERIFY(byDemand.indexOf(QLatin1String("LEAFLET A4")) < byDemand.indexOf(QLatin1String("PRODUCT CARTON")));
}

QTEST_MAIN(TestJobPaperDesigns)
#include "tst_jobpaperdesigns.moc"
