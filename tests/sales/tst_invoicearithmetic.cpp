// The figures of an invoice line: the price and the three taxes in whole
// money, each rounded half to even in its fixed order, exactly; the
// invoice's totals and its terms list; the checks of the line buttons.
#include "sales/InvoiceArithmetic.h"
#include "sales/InvoiceRules.h"

#include <QtTest>

using namespace InvoiceArithmetic;

class TestInvoiceArithmetic : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void computeLine_data();
    void computeLine();
    void decimals_data();
    void decimals();
    void totalsKeepEarlierValues();
    void termsList_data();
    void termsList();
    void lineChecks_data();
    void lineChecks();
};

void TestInvoiceArithmetic::computeLine_data()
{
    QTest::addColumn<QString>("quantity");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("saleTax");
    QTest::addColumn<QString>("furtherTax");
    QTest::addColumn<QString>("ced");
    QTest::addColumn<bool>("ok");
    // price, sale tax, further tax, CED, value with tax
    QTest::addColumn<QList<qint64>>("figures");
    using L = QList<qint64>;

    // Price: quantity times rate, half to even.
    QTest::newRow("2.5 x 1 prices at 2") << "2.5"
                                         << "1"
                                         << "0"
                                         << "0"
                                         << "0" << true << L{2, 0, 0, 0, 2};
    QTest::newRow("3.5 x 1 prices at 4") << "3.5"
                                         << "1"
                                         << "0"
                                         << "0"
                                         << "0" << true << L{4, 0, 0, 0, 4};
    QTest::newRow("0.5 x 1 prices at 0") << "0.5"
                                         << "1"
                                         << "0"
                                         << "0"
                                         << "0" << true << L{0, 0, 0, 0, 0};
    QTest::newRow("0.125 x 12 = 1.5 prices at 2") << "0.125"
                                                  << "12"
                                                  << "0"
                                                  << "0"
                                                  << "0" << true << L{2, 0, 0, 0, 2};
    QTest::newRow("2.675 x 2 = 5.35 prices at 5") << "2.675"
                                                  << "2"
                                                  << "0"
                                                  << "0"
                                                  << "0" << true << L{5, 0, 0, 0, 5};
    QTest::newRow("1.005 x 1000 is exactly 1005") << "1.005"
                                                  << "1000"
                                                  << "0"
                                                  << "0"
                                                  << "0" << true << L{1005, 0, 0, 0, 1005};
    QTest::newRow("0.15 x 10 = 1.5 prices at 2") << "0.15"
                                                 << "10"
                                                 << "0"
                                                 << "0"
                                                 << "0" << true << L{2, 0, 0, 0, 2};
    QTest::newRow("a hair above a half") << "2.500001"
                                         << "1"
                                         << "0"
                                         << "0"
                                         << "0" << true << L{3, 0, 0, 0, 3};

    // Sale tax on the whole price, half to even.
    QTest::newRow("1005 at 5%: 50.25 gives 50") << "1005"
                                                << "1"
                                                << "5"
                                                << "0"
                                                << "0" << true << L{1005, 50, 0, 0, 1055};
    QTest::newRow("1010 at 5%: 50.5 gives 50") << "1010"
                                               << "1"
                                               << "5"
                                               << "0"
                                               << "0" << true << L{1010, 50, 0, 0, 1060};
    QTest::newRow("1030 at 5%: 51.5 gives 52") << "1030"
                                               << "1"
                                               << "5"
                                               << "0"
                                               << "0" << true << L{1030, 52, 0, 0, 1082};
    QTest::newRow("1070 at 5%: 53.5 gives 54") << "1070"
                                               << "1"
                                               << "5"
                                               << "0"
                                               << "0" << true << L{1070, 54, 0, 0, 1124};
    QTest::newRow("1010 at 16.5%: 166.65 gives 167") << "1010"
                                                     << "1"
                                                     << "16.5"
                                                     << "0"
                                                     << "0" << true << L{1010, 167, 0, 0, 1177};
    // The tax is taken on the rounded price, not on quantity times rate.
    QTest::newRow("tax on the rounded price") << "10.05"
                                              << "100"
                                              << "10"
                                              << "0"
                                              << "0" << true << L{1005, 100, 0, 0, 1105};

    // Further tax and CED round the same way, each on its own.
    QTest::newRow("further 0.5% of 900: 4.5 gives 4") << "900"
                                                      << "1"
                                                      << "0"
                                                      << "0.5"
                                                      << "0" << true << L{900, 0, 4, 0, 904};
    QTest::newRow("further 0.5% of 1100: 5.5 gives 6") << "1100"
                                                       << "1"
                                                       << "0"
                                                       << "0.5"
                                                       << "0" << true << L{1100, 0, 6, 0, 1106};
    QTest::newRow("CED 1% of 250: 2.5 gives 2") << "250"
                                                << "1"
                                                << "0"
                                                << "0"
                                                << "1" << true << L{250, 0, 0, 2, 252};
    QTest::newRow("CED 1% of 350: 3.5 gives 4") << "350"
                                                << "1"
                                                << "0"
                                                << "0"
                                                << "1" << true << L{350, 0, 0, 4, 354};
    QTest::newRow("all three taxes") << "100"
                                     << "10"
                                     << "17"
                                     << "3"
                                     << "1" << true << L{1000, 170, 30, 10, 1210};
    QTest::newRow("fractional rates on one price") << "10"
                                                   << "25.1"
                                                   << "2.5"
                                                   << "0.5"
                                                   << "1.5" << true << L{251, 6, 1, 4, 262};

    // Empty fields count as nought.
    QTest::newRow("empty quantity") << ""
                                    << "5"
                                    << "17"
                                    << ""
                                    << "" << true << L{0, 0, 0, 0, 0};
    QTest::newRow("empty taxes") << "4"
                                 << "2.5"
                                 << ""
                                 << ""
                                 << "" << true << L{10, 0, 0, 0, 10};
    QTest::newRow("a point alone") << "."
                                   << "5"
                                   << "0"
                                   << "0"
                                   << "0" << true << L{0, 0, 0, 0, 0};

    // The 32-bit edge of every figure.
    QTest::newRow("largest price") << "2147483647"
                                   << "1"
                                   << "0"
                                   << "0"
                                   << "0" << true << L{2147483647, 0, 0, 0, 2147483647};
    QTest::newRow("price beyond") << "2147483648"
                                  << "1"
                                  << "0"
                                  << "0"
                                  << "0" << false << L{};
    QTest::newRow("value beyond") << "2000000000"
                                  << "1"
                                  << "17"
                                  << "0"
                                  << "0" << false << L{};
    QTest::newRow("value at the edge") << "2147483600"
                                       << "1"
                                       << "0"
                                       << "0"
                                       << "0.000002" << true << L{2147483600, 0, 0, 43, 2147483643};
    QTest::newRow("a half rounding up past the edge") << "4294967295"
                                                      << "0.5"
                                                      << "0"
                                                      << "0"
                                                      << "0" << false << L{};

    // Text that is no number.
    QTest::newRow("two points") << "1.2.3"
                                << "1"
                                << "0"
                                << "0"
                                << "0" << false << L{};
    QTest::newRow("seven decimals") << "1.0000001"
                                    << "1"
                                    << "0"
                                    << "0"
                                    << "0" << false << L{};
    QTest::newRow("a minus") << "-1"
                             << "1"
                             << "0"
                             << "0"
                             << "0" << false << L{};
    QTest::newRow("letters in a tax") << "1"
                                      << "1"
                                      << "1O"
                                      << "0"
                                      << "0" << false << L{};
}

void TestInvoiceArithmetic::computeLine()
{
    QFETCH(QString, quantity);
    QFETCH(QString, rate);
    QFETCH(QString, saleTax);
    QFETCH(QString, furtherTax);
    QFETCH(QString, ced);
    QFETCH(bool, ok);
    QFETCH(QList<qint64>, figures);
    const auto f = InvoiceArithmetic::computeLine({quantity, rate, saleTax, furtherTax, ced});
    QCOMPARE(f.has_value(), ok);
    if (!ok)
        return;
    QCOMPARE((QList<qint64>{f->price, f->saleTax, f->furtherTax, f->ced, f->valueWithTax}), figures);

    // The rule the screen calls gives the same figures in money.
    InvoiceLine l;
    l.quantity = quantity;
    l.rate = rate;
    l.saleTaxRate = saleTax;
    l.furtherTaxRate = furtherTax;
    l.cedRate = ced;
    QVERIFY(InvoiceRules::computeFigures(l).ok);
    QCOMPARE(l.price, Money::fromUnits(figures[0]));
    QCOMPARE(l.saleTax, Money::fromUnits(figures[1]));
    QCOMPARE(l.valueWithTax, Money::fromUnits(figures[4]));
}

void TestInvoiceArithmetic::decimals_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::newRow("whole") << "1005"
                           << "1005";
    QTest::newRow("leading zeros") << "007"
                                   << "7";
    QTest::newRow("trailing zeros") << "2.500000"
                                    << "2.5";
    QTest::newRow("leading point") << ".125"
                                   << "0.125";
    QTest::newRow("empty") << ""
                           << "0";
    QTest::newRow("six decimals") << "0.000001"
                                  << "0.000001";
    QTest::newRow("blanks around") << " 12.5 "
                                   << "12.5";
}

void TestInvoiceArithmetic::decimals()
{
    QFETCH(QString, typed);
    QFETCH(QString, kept);
    const auto d = Decimal::parse(typed);
    QVERIFY(d);
    QCOMPARE(d->toString(), kept);
    // What a database hands back reads the same way.
    QCOMPARE(decimalText(QVariant(kept)), kept);
    QCOMPARE(decimalText(QVariant(kept.toDouble())), kept);
}

// A second line typed with another CED rate: the invoice's CED total
// follows the new rate, while the first line keeps the value it was
// computed with, and the net is the sum of the lines' values.
void TestInvoiceArithmetic::totalsKeepEarlierValues()
{
    InvoiceLine a;
    a.quantity = QStringLiteral("10");
    a.rate = QStringLiteral("100");
    a.saleTaxRate = QStringLiteral("17");
    a.cedRate = QStringLiteral("1");
    QVERIFY(InvoiceRules::computeFigures(a).ok);
    InvoiceLine b = a;
    b.quantity = QStringLiteral("5");
    b.cedRate = QStringLiteral("2");
    QVERIFY(InvoiceRules::computeFigures(b).ok);
    QCOMPARE(a.valueWithTax, Money::fromUnits(1000 + 170 + 10));
    QCOMPARE(b.valueWithTax, Money::fromUnits(500 + 85 + 10));

    const InvoiceTotals t = InvoiceRules::totals({a, b}, QStringLiteral("2"));
    QCOMPARE(t.valueExSaleTax, Money::fromUnits(1500));
    QCOMPARE(t.saleTax, Money::fromUnits(255));
    QCOMPARE(t.totalCed, Money::fromUnits(30));
    QCOMPARE(t.net, Money::fromUnits(1180 + 595));
    QVERIFY(t.any);

    b.state = LineState::Delete;
    const InvoiceTotals left = InvoiceRules::totals({a, b}, QStringLiteral("2.5"));
    QCOMPARE(left.net, a.valueWithTax);
    QCOMPARE(left.totalCed, Money::fromUnits(25));
    QCOMPARE(InvoiceRules::netAmount({a, b}), a.valueWithTax);
    a.state = LineState::Delete;
    QVERIFY(!InvoiceRules::totals({a, b}, QStringLiteral("1")).any);
}

void TestInvoiceArithmetic::termsList_data()
{
    QTest::addColumn<QStringList>("terms");
    QTest::addColumn<QString>("list");
    QTest::newRow("two terms") << QStringList{"CREDIT", "CASH"} << "CASH, CREDIT, ";
    QTest::newRow("each once") << QStringList{"CASH SALE", "CASH SALE", "CREDIT SALE"} << "CASH SALE, CREDIT SALE, ";
    QTest::newRow("one term") << QStringList{"CASH"} << "CASH, ";
    QTest::newRow("no line") << QStringList{} << "";
}

void TestInvoiceArithmetic::termsList()
{
    QFETCH(QStringList, terms);
    QFETCH(QString, list);
    QVector<InvoiceLine> lines;
    for (const QString &t : terms) {
        InvoiceLine l;
        l.termsOfSale = t;
        lines << l;
    }
    InvoiceLine gone;
    gone.termsOfSale = QStringLiteral("ADVANCE");
    gone.state = LineState::Delete;
    lines << gone;
    QCOMPARE(InvoiceRules::termsList(lines), list);
}

void TestInvoiceArithmetic::lineChecks_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QStringList>("entry"); // terms, number, name, code, description, quantity, rate
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    using namespace InvoiceMessages;
    const int add = int(InvoiceRules::LineCommand::Add), change = int(InvoiceRules::LineCommand::Change);
    const QStringList full{"CASH", "7", "CRESCENT", "17-10-001", "CARTON", "10", "5"};
    auto without = [&](int i) {
        QStringList e = full;
        e[i].clear();
        return e;
    };
    QTest::newRow("add: all there") << add << full << ""
                                    << "";
    QTest::newRow("add: terms") << add << without(0) << kNoTerms << "txtTermOfSale";
    QTest::newRow("add: number") << add << without(1) << kNoInvoiceNo << "txtInvoiceNo";
    QTest::newRow("add: party") << add << without(2) << kNoParty << "cmbPartyName";
    QTest::newRow("add: code") << add << without(3) << kPartyNotFound << "cmbPartyName";
    QTest::newRow("add: description") << add << without(4) << kNoDescription << "cmbDesc";
    QTest::newRow("add: quantity") << add << without(5) << kNoQuantity << "txtQuantity";
    QTest::newRow("add: rate") << add << without(6) << kNoRate << "txtRate";
    QTest::newRow("change: no terms needed") << change << without(0) << ""
                                             << "";
    QTest::newRow("change: code") << change << without(3) << kPartyCodeNotFound << "cmbPartyName";
    QTest::newRow("change: no quantity needed") << change << without(5) << ""
                                                << "";
}

void TestInvoiceArithmetic::lineChecks()
{
    QFETCH(int, command);
    QFETCH(QStringList, entry);
    QFETCH(QString, message);
    QFETCH(QString, field);
    const InvoiceRules::LineEntry e{entry[0], entry[1], entry[2], entry[3], entry[4], entry[5], entry[6]};
    const auto c = InvoiceRules::LineCommand(command);
    Outcome o = InvoiceRules::checkLineHead(e, c);
    if (o)
        o = InvoiceRules::checkLineTail(e, c);
    QCOMPARE(o.ok, message.isEmpty());
    QCOMPARE(o.message, message);
    QCOMPARE(o.field, field);
}

QTEST_APPLESS_MAIN(TestInvoiceArithmetic)
#include "tst_invoicearithmetic.moc"
