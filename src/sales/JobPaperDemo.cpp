#include "sales/JobPaperDemo.h"

#include "accounts/TitleList.h"
#include "foundation/SessionConnection.h"
#include "sales/DeliveryChallanRules.h"
#include "sales/JobCardRules.h"
#include "sales/PurchaseOrderRules.h"
#include "vouchers/DemoGenerator.h"

#include <algorithm>

namespace {

struct Item
{
    const char *description;
    const char *unit;
    qint64 minCents;
    qint64 maxCents;
};

const Item kItems[] = {
    {"PRODUCT CARTON 4 COLOUR", "PCS", 1200, 4500},  {"LEAFLET A4 ART PAPER 128G", "PCS", 150, 600},
    {"LABEL SELF ADHESIVE 2X3", "PCS", 40, 200},      {"CORRUGATED BOX 5 PLY", "PCS", 4500, 12000},
    {"LETTERHEAD 80G OFFSET", "PCS", 200, 500},       {"BROCHURE 8 PAGES", "PCS", 1500, 5000},
    {"INSERT SLIP 1 COLOUR", "PCS", 30, 120},         {"SHOPPING BAG KRAFT", "PCS", 2500, 7000},
    {"STICKER ROLL BARCODE", "ROLL", 30000, 90000},   {"CALENDAR WALL 12 SHEETS", "PCS", 9000, 25000},
};

const char *const kPaper[] = {"ART CARD 300G", "ART PAPER 128G", "OFFSET 80G", "KRAFT 120G", "DUPLEX BOARD 350G"};
const char *const kSize[] = {"23X36", "25X36", "20X30", "18X23"};
const char *const kCutting[] = {"1/4", "1/8", "1/2", "FULL"};
const char *const kPrinting[] = {"4 COLOUR", "2 COLOUR", "1 COLOUR", "4+1 COLOUR"};
const char *const kMachine[] = {"HEIDELBERG SM 74", "KOMORI 28", "ROLAND 200", "GTO 52"};
const char *const kYesNo[] = {"YES", "NO", "OLD"};
const char *const kLamination[] = {"GLOSS", "MATT", "NONE", "UV SPOT"};
const char *const kStatus[] = {"IN PROCESS", "PRINTED", "DELIVERED", "ON HOLD"};

template <size_t N>
QString pickOf(DemoContext &c, const char *const (&list)[N])
{
    return QString::fromLatin1(list[c.rng.bounded(int(N))]);
}

void need(const Outcome &out)
{
    if (!out)
        throw DbError(QStringLiteral("The demonstration's job paperwork was refused: %1").arg(out.message));
}

QStringList demoTitles(DemoContext &c)
{
    QStringList titles = TitleList::names(c.db);
    if (!titles.isEmpty())
        return titles;
    const auto company = c.db.selectOne(QStringLiteral("SELECT TLClientAddress, TLClientPhone, TLClientEmail, "
                                                       "TLClientSaleTaxNo, TLClientNTN FROM tblTLClientInfo"));
    for (const QString &t : {QStringLiteral("TESSEL PRINTERS"), QStringLiteral("TESSEL PACKAGES")}) {
        need(TitleList::add(c.db, t));
        TitleList::Letterhead l;
        l.titleName = t;
        l.companyName = t;
        if (company) {
            l.companyAddress = company->text(0);
            l.companyPhone = company->text(1);
            l.companyEmail = company->text(2);
            l.companySaleTaxNo = company->text(3);
            l.companyNTN = company->text(4);
        }
        need(TitleList::saveLetterhead(c.db, l));
        titles << t;
    }
    return titles;
}

} // namespace

void jobPaperDemoPart(DemoContext &c)
{
    if (c.chart.customers.isEmpty())
        return;
    const QStringList titles = demoTitles(c);
    const int orders = int(std::clamp<qint64>(c.options.rows / 400, 8, 5000));
    const QDate lastOrder = c.options.to.addDays(-20) < c.options.from ? c.options.to : c.options.to.addDays(-20);
    const QString user = c.options.userName;

    for (int n = 0; n < orders; ++n) {
        const DemoAccount &party = c.pick(c.chart.customers);
        OrderLine head;
        head.titleName = titles.at(c.rng.bounded(titles.size()));
        head.date = c.dateBetween(c.options.from, lastOrder);
        head.partyPONo = QStringLiteral("PO-%1/%2").arg(head.date.year() % 100).arg(1000 + n);
        head.partyCode = party.code;
        head.partyName = party.name;
        head.poNo = PurchaseOrderRules::nextOrderNo(c.db, head.titleName);

        const int lineCount = 1 + c.rng.bounded(4);
        QVector<OrderLine> lines;
        for (int i = 0; i < lineCount; ++i) {
            const Item &item = kItems[c.rng.bounded(int(std::size(kItems)))];
            OrderLine l = head;
            l.description = QString::fromLatin1(item.description);
            l.type = QString::fromLatin1(item.unit);
            l.quantity = Money::fromUnits((1 + c.rng.bounded(40)) * 500);
            l.unitPrice = Money::fromCents(item.minCents + c.rng.bounded(int(item.maxCents - item.minCents)));
            l.demandNo = QStringLiteral("D-%1").arg(10000 + n * 5 + i);
            l.jobNo = QStringLiteral("SI-%1").arg(500 + n);
            const Outcome out = PurchaseOrderRules::saveLine(
                c.db, l, i == 0 ? JobPaper::Numbering::Proposed : JobPaper::Numbering::Existing);
            need(out);
            head.poNo = out.number;
            l.poNo = out.number;
            lines << l;
        }

        // Most orders get a job card.
        if (c.rng.bounded(10) < 7) {
            JobCard card;
            card.number = JobCardRules::nextJobCardNo(c.db);
            card.partyPONo = head.partyPONo;
            card.partyCode = party.code;
            card.partyName = party.name;
            card.date = head.date.addDays(c.rng.bounded(3));
            card.poDate = head.date;
            card.issueDate = card.date.addDays(1);
            card.quantity = lines.first().quantity->toFieldString();
            card.press = {{QStringLiteral("JobDetail"), lines.first().description},
                          {QStringLiteral("Paper"), pickOf(c, kPaper)},
                          {QStringLiteral("PaperSize"), pickOf(c, kSize)},
                          {QStringLiteral("CuttingSize"), pickOf(c, kCutting)},
                          {QStringLiteral("Printing"), pickOf(c, kPrinting)},
                          {QStringLiteral("Machine"), pickOf(c, kMachine)},
                          {QStringLiteral("Design"), pickOf(c, kYesNo)},
                          {QStringLiteral("Positive"), pickOf(c, kYesNo)},
                          {QStringLiteral("Plate"), pickOf(c, kYesNo)},
                          {QStringLiteral("Die"), pickOf(c, kYesNo)},
                          {QStringLiteral("Bleach"), QStringLiteral("NO")},
                          {QStringLiteral("Lamination"), pickOf(c, kLamination)},
                          {QStringLiteral("Other"), QString()},
                          {QStringLiteral("Status"), pickOf(c, kStatus)}};
            need(JobCardRules::save(c.db, card, JobPaper::Numbering::Proposed, user, card.date));
        }

        // A third delivered in full (in one or two challans), a third in
        // part, a third not yet.
        const int fate = c.rng.bounded(3);
        if (fate == 2)
            continue;
        const int challans = fate == 0 ? 1 + c.rng.bounded(2) : 1;
        for (int k = 0; k < challans; ++k) {
            ChallanLine ch;
            ch.titleName = head.titleName;
            ch.challanNo = DeliveryChallanRules::nextChallanNo(c.db, ch.titleName);
            ch.date = std::min(c.options.to, head.date.addDays(5 + 7 * k + c.rng.bounded(10)));
            ch.partyCode = party.code;
            ch.partyName = party.name;
            ch.partyPONo = head.partyPONo;
            ch.gateEntryNo = QStringLiteral("GE-%1").arg(7000 + n * 3 + k);
            bool first = true;
            for (const OrderLine &l : std::as_const(lines)) {
                const qint64 ordered = l.quantity->cents();
                qint64 qty = fate == 0 ? (challans == 1 ? ordered : (k == 0 ? ordered / 2 : ordered - ordered / 2))
                                       : ordered / 2;
                if (fate == 1 && &l != &lines.first() && c.rng.bounded(2) == 0)
                    continue; // this item not yet sent
                ChallanLine line = ch;
                line.description = l.description;
                line.demandNo = l.demandNo;
                line.type = l.type;
                line.quantity = Money::fromCents(qty / 100 * 100);
                line.ctn = QString::number(1 + qty / 100 / 500);
                const Outcome out = DeliveryChallanRules::saveLine(
                    c.db, line, first ? JobPaper::Numbering::Proposed : JobPaper::Numbering::Existing, ch.date);
                need(out);
                ch.challanNo = out.number;
                first = false;
            }
        }
    }
}
