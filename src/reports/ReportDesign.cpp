#include "reports/ReportDesign.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QRegularExpression>

namespace Reports {

namespace {

const QRegularExpression &identifierRe()
{
    static const QRegularExpression re(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    return re;
}

class Reader
{
public:
    explicit Reader(QString origin) : m_origin(std::move(origin)) {}

    [[noreturn]] void fail(const QString &what) const
    {
        throw DesignError(QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_origin), what));
    }

    QString identifier(const QJsonValue &v, const QString &place) const
    {
        if (!v.isString())
            fail(QStringLiteral("%1 must be a field name").arg(place));
        const QString s = v.toString().trimmed();
        if (!identifierRe().match(s).hasMatch())
            fail(QStringLiteral("%1 \"%2\" is not a field name").arg(place, s));
        return s;
    }

    QString text(const QJsonObject &o, const char *key, const QString &def = QString()) const
    {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined() || v.isNull())
            return def;
        if (!v.isString())
            fail(QStringLiteral("\"%1\" must be text").arg(QLatin1String(key)));
        return v.toString();
    }

    bool flag(const QJsonObject &o, const char *key, bool def = false) const
    {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined() || v.isNull())
            return def;
        if (!v.isBool())
            fail(QStringLiteral("\"%1\" must be true or false").arg(QLatin1String(key)));
        return v.toBool();
    }

    double number(const QJsonObject &o, const char *key, double def) const
    {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined() || v.isNull())
            return def;
        if (!v.isDouble())
            fail(QStringLiteral("\"%1\" must be a number").arg(QLatin1String(key)));
        return v.toDouble();
    }

    QStringList fieldList(const QJsonObject &o, const char *key) const
    {
        QStringList out;
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined() || v.isNull())
            return out;
        if (!v.isArray())
            fail(QStringLiteral("\"%1\" must be a list of field names").arg(QLatin1String(key)));
        for (const QJsonValue &e : v.toArray())
            out << identifier(e, QStringLiteral("an entry of \"%1\"").arg(QLatin1String(key)));
        return out;
    }

    FieldFormat format(const QJsonObject &o) const
    {
        const QString f = text(o, "format", QStringLiteral("text")).toLower();
        if (f == QLatin1String("text")) return FieldFormat::Text;
        if (f == QLatin1String("money")) return FieldFormat::Money;
        if (f == QLatin1String("balance")) return FieldFormat::Balance;
        if (f == QLatin1String("number")) return FieldFormat::Number;
        if (f == QLatin1String("integer")) return FieldFormat::Integer;
        if (f == QLatin1String("date")) return FieldFormat::Date;
        fail(QStringLiteral("unknown format \"%1\" (text, money, balance, number, integer or date)").arg(f));
    }

    Align align(const QJsonObject &o, FieldFormat f) const
    {
        const bool numeric = f == FieldFormat::Money || f == FieldFormat::Balance || f == FieldFormat::Number
            || f == FieldFormat::Integer;
        const QString a = text(o, "align", numeric ? QStringLiteral("right") : QStringLiteral("left")).toLower();
        if (a == QLatin1String("left")) return Align::Left;
        if (a == QLatin1String("right")) return Align::Right;
        if (a == QLatin1String("center") || a == QLatin1String("centre")) return Align::Center;
        fail(QStringLiteral("unknown alignment \"%1\" (left, center or right)").arg(a));
    }

    QJsonArray array(const QJsonObject &o, const char *key) const
    {
        const QJsonValue v = o.value(QLatin1String(key));
        if (v.isUndefined() || v.isNull())
            return {};
        if (!v.isArray())
            fail(QStringLiteral("\"%1\" must be a list").arg(QLatin1String(key)));
        return v.toArray();
    }

    QJsonObject object(const QJsonValue &v, const QString &place) const
    {
        if (!v.isObject())
            fail(QStringLiteral("%1 must be an object").arg(place));
        return v.toObject();
    }

private:
    QString m_origin;
};

} // namespace

int ReportDesign::columnIndex(const QString &field) const
{
    for (int i = 0; i < columns.size(); ++i)
        if (columns.at(i).field.compare(field, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QStringList ReportDesign::fieldsUsed() const
{
    QStringList out;
    auto add = [&out](const QString &f) {
        if (!f.isEmpty() && !out.contains(f, Qt::CaseInsensitive))
            out << f;
    };
    for (const DesignColumn &c : columns) add(c.field);
    for (const DesignGroup &g : groups) { add(g.field); for (const QString &s : g.sums) add(s); }
    for (const DesignField &d : documentFields) add(d.field);
    for (const QString &t : totals) add(t);
    add(emphasisField);
    add(asAtField);
    if (chart) {
        add(chart->label);
        for (const QString &v : chart->values) add(v);
    }
    if (link)
        for (const auto &k : link->keys) add(k.second);
    return out;
}

ReportDesign parseDesign(const QByteArray &json, const QString &origin)
{
    Reader r(origin);
    QJsonParseError err;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &err);
    if (err.error != QJsonParseError::NoError) {
        // Say where, as a line number the user can find in an editor.
        const int line = json.left(err.offset).count('\n') + 1;
        r.fail(QStringLiteral("line %1: %2").arg(line).arg(err.errorString()));
    }
    if (!doc.isObject())
        r.fail(QStringLiteral("the design must be one JSON object"));
    const QJsonObject o = doc.object();

    ReportDesign d;
    d.origin = origin;
    d.name = r.text(o, "name", QFileInfo(origin).completeBaseName());
    d.source = r.identifier(o.value(QLatin1String("source")), QStringLiteral("\"source\""));
    d.title = r.text(o, "title");
    d.landscape = r.text(o, "orientation", QStringLiteral("portrait")).compare(QLatin1String("landscape"), Qt::CaseInsensitive) == 0;
    d.strip = r.text(o, "form", QStringLiteral("list")).compare(QLatin1String("strip"), Qt::CaseInsensitive) == 0;
    d.showPeriod = r.flag(o, "period");
    d.periodText = r.text(o, "periodText", QStringLiteral("FROM {from} TO {to}"));

    for (const QJsonValue &v : r.array(o, "orderBy")) {
        if (!v.isString())
            r.fail(QStringLiteral("an entry of \"orderBy\" must be text"));
        const QStringList parts = v.toString().simplified().split(QLatin1Char(' '));
        const QString field = r.identifier(parts.value(0), QStringLiteral("\"orderBy\""));
        if (parts.size() > 2 || (parts.size() == 2 && parts.at(1).toUpper() != QLatin1String("DESC")
                                 && parts.at(1).toUpper() != QLatin1String("ASC")))
            r.fail(QStringLiteral("\"orderBy\" entry \"%1\" must be a field, optionally followed by ASC or DESC").arg(v.toString()));
        d.orderBy << (parts.size() == 2 && parts.at(1).toUpper() == QLatin1String("DESC") ? field + QStringLiteral(" DESC") : field);
    }

    const QJsonArray cols = r.array(o, "columns");
    if (cols.isEmpty())
        r.fail(QStringLiteral("\"columns\" must list at least one column"));
    for (const QJsonValue &v : cols) {
        const QJsonObject c = r.object(v, QStringLiteral("a column"));
        DesignColumn col;
        col.field = r.identifier(c.value(QLatin1String("field")), QStringLiteral("a column's \"field\""));
        col.caption = r.text(c, "caption", col.field);
        col.width = r.number(c, "width", 10);
        if (col.width <= 0)
            r.fail(QStringLiteral("column \"%1\": width must be above zero").arg(col.field));
        col.format = r.format(c);
        col.align = r.align(c, col.format);
        col.decimals = int(r.number(c, "decimals", col.format == FieldFormat::Number ? 2 : 0));
        if (col.decimals < 0 || col.decimals > 6)
            r.fail(QStringLiteral("column \"%1\": decimals must be 0 to 6").arg(col.field));
        col.blankZero = r.flag(c, "blankZero");
        col.running = r.flag(c, "running");
        d.columns << col;
    }

    for (const QJsonValue &v : r.array(o, "groups")) {
        const QJsonObject g = r.object(v, QStringLiteral("a group"));
        DesignGroup grp;
        grp.field = r.identifier(g.value(QLatin1String("field")), QStringLiteral("a group's \"field\""));
        grp.keyLength = int(r.number(g, "keyLength", 0));
        grp.header = r.text(g, "header", QStringLiteral("{%1}").arg(grp.field));
        grp.footer = r.text(g, "footer");
        grp.sums = r.fieldList(g, "sums");
        grp.newPage = r.flag(g, "newPage");
        d.groups << grp;
    }

    for (const QJsonValue &v : r.array(o, "documentFields")) {
        const QJsonObject f = r.object(v, QStringLiteral("a document field"));
        DesignField df;
        df.field = r.identifier(f.value(QLatin1String("field")), QStringLiteral("a document field's \"field\""));
        df.caption = r.text(f, "caption", df.field);
        df.format = r.format(f);
        d.documentFields << df;
    }

    const QJsonValue totals = o.value(QLatin1String("totals"));
    if (!totals.isUndefined() && !totals.isNull()) {
        const QJsonObject t = r.object(totals, QStringLiteral("\"totals\""));
        d.totalsCaption = r.text(t, "caption", QStringLiteral("TOTAL"));
        d.totals = r.fieldList(t, "sums");
        d.countInTotals = r.flag(t, "count");
    }
    for (const QJsonValue &v : r.array(o, "signatures")) {
        if (!v.isString())
            r.fail(QStringLiteral("an entry of \"signatures\" must be text"));
        d.signatures << v.toString();
    }

    const QJsonValue emph = o.value(QLatin1String("emphasis"));
    if (!emph.isUndefined() && !emph.isNull()) {
        const QJsonObject e = r.object(emph, QStringLiteral("\"emphasis\""));
        d.emphasisField = r.identifier(e.value(QLatin1String("field")), QStringLiteral("\"emphasis\" field"));
        d.emphasisSuffix = r.text(e, "endsWith");
    }

    if (o.contains(QLatin1String("asAt")))
        d.asAtField = r.identifier(o.value(QLatin1String("asAt")), QStringLiteral("\"asAt\""));
    const QJsonValue balance = o.value(QLatin1String("balanceLine"));
    if (!balance.isUndefined() && !balance.isNull()) {
        const QJsonObject b = r.object(balance, QStringLiteral("\"balanceLine\""));
        d.balanceDebit = r.identifier(b.value(QLatin1String("debit")), QStringLiteral("\"balanceLine\" debit"));
        d.balanceCredit = r.identifier(b.value(QLatin1String("credit")), QStringLiteral("\"balanceLine\" credit"));
        d.balanceCaption = r.text(b, "caption", QStringLiteral("DIFFERENCE"));
        if (d.columnIndex(d.balanceDebit) < 0 || d.columnIndex(d.balanceCredit) < 0)
            r.fail(QStringLiteral("\"balanceLine\": debit and credit must be columns of the design"));
    }
    d.halfPage = r.flag(o, "halfPage");
    d.ruled = r.flag(o, "ruled");
    if (o.contains(QLatin1String("amountInWords"))) {
        d.wordsField = r.identifier(o.value(QLatin1String("amountInWords")), QStringLiteral("\"amountInWords\""));
        if (d.columnIndex(d.wordsField) < 0)
            r.fail(QStringLiteral("\"amountInWords\" must be a column of the design"));
    }

    const QJsonValue chart = o.value(QLatin1String("chart"));
    if (!chart.isUndefined() && !chart.isNull()) {
        const QJsonObject c = r.object(chart, QStringLiteral("\"chart\""));
        DesignChart dc;
        const QString kind = r.text(c, "type", QStringLiteral("bar")).toLower();
        if (kind == QLatin1String("bar"))
            dc.kind = DesignChart::Kind::Bar;
        else if (kind == QLatin1String("stacked"))
            dc.kind = DesignChart::Kind::Stacked;
        else if (kind == QLatin1String("line"))
            dc.kind = DesignChart::Kind::Line;
        else
            r.fail(QStringLiteral("unknown chart type \"%1\" (bar, stacked or line)").arg(kind));
        if (!r.text(c, "label").isEmpty())
            dc.label = r.identifier(c.value(QLatin1String("label")), QStringLiteral("\"chart\" label"));
        dc.values = r.fieldList(c, "values");
        if (dc.values.isEmpty())
            r.fail(QStringLiteral("\"chart\" needs \"values\": the fields of its categories"));
        for (const QString &v : dc.values) {
            const int col = d.columnIndex(v);
            dc.categories << (col >= 0 ? d.columns.at(col).caption : v);
        }
        dc.caption = r.text(c, "caption");
        dc.maxSeries = qBound(1, c.value(QLatin1String("maxSeries")).toInt(8), 30);
        d.chart = dc;
    }

    const QJsonValue link = o.value(QLatin1String("link"));
    if (!link.isUndefined() && !link.isNull()) {
        const QJsonObject l = r.object(link, QStringLiteral("\"link\""));
        DesignLink dl;
        dl.name = r.text(l, "name");
        dl.design = r.text(l, "design");
        if (dl.design.isEmpty())
            r.fail(QStringLiteral("\"link\" must name the \"design\" it opens"));
        dl.title = r.text(l, "title");
        const QJsonValue keys = l.value(QLatin1String("keys"));
        if (!keys.isObject() || keys.toObject().isEmpty())
            r.fail(QStringLiteral("\"link\" needs \"keys\": {\"TargetField\": \"ThisField\"}"));
        const QJsonObject ko = keys.toObject();
        for (auto it = ko.begin(); it != ko.end(); ++it)
            dl.keys << qMakePair(r.identifier(QJsonValue(it.key()), QStringLiteral("a link key")),
                                 r.identifier(it.value(), QStringLiteral("a link key's field")));
        d.link = dl;
    }

    // Every summed field must have a column to print under.
    auto checkSums = [&](const QStringList &sums, const QString &place) {
        for (const QString &s : sums) {
            const int i = d.columnIndex(s);
            if (i < 0)
                r.fail(QStringLiteral("%1 sums \"%2\", which is not a column").arg(place, s));
            const FieldFormat f = d.columns.at(i).format;
            if (f == FieldFormat::Text || f == FieldFormat::Date)
                r.fail(QStringLiteral("%1 sums \"%2\", which is not a number column").arg(place, s));
        }
    };
    for (const DesignGroup &g : d.groups)
        checkSums(g.sums, QStringLiteral("the group on \"%1\"").arg(g.field));
    checkSums(d.totals, QStringLiteral("\"totals\""));
    return d;
}

// ------------------------------------------------------------ catalogue

DesignCatalogue::DesignCatalogue(QString userDir) : m_userDir(std::move(userDir)) {}

QString DesignCatalogue::shippedPath(const QString &name)
{
    return QStringLiteral(":/designs/%1.json").arg(name);
}

QStringList DesignCatalogue::shippedNames()
{
    QStringList out;
    const QStringList files = QDir(QStringLiteral(":/designs")).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QString &f : files)
        out << QFileInfo(f).completeBaseName();
    return out;
}

bool DesignCatalogue::contains(const QString &name) const
{
    if (!identifierRe().match(name).hasMatch())
        return false;
    if (QFile::exists(shippedPath(name)))
        return true;
    return !m_userDir.isEmpty() && QFile::exists(QDir(m_userDir).filePath(name + QStringLiteral(".json")));
}

ReportDesign DesignCatalogue::load(const QString &name, QStringList *warnings) const
{
    if (!identifierRe().match(name).hasMatch())
        throw DesignError(QStringLiteral("\"%1\" is not a report design name").arg(name));

    if (!m_userDir.isEmpty()) {
        const QString path = QDir(m_userDir).filePath(name + QStringLiteral(".json"));
        if (QFile::exists(path)) {
            QFile f(path);
            try {
                if (!f.open(QIODevice::ReadOnly))
                    throw DesignError(QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), f.errorString()));
                return parseDesign(f.readAll(), path);
            } catch (const DesignError &e) {
                if (warnings)
                    warnings->append(e.message());
            }
        }
    }

    QFile f(shippedPath(name));
    if (!f.open(QIODevice::ReadOnly))
        throw DesignError(QStringLiteral("There is no report design \"%1\"").arg(name));
    return parseDesign(f.readAll(), shippedPath(name));
}

QString formatName(FieldFormat f)
{
    switch (f) {
    case FieldFormat::Text: return QStringLiteral("text");
    case FieldFormat::Money: return QStringLiteral("money");
    case FieldFormat::Balance: return QStringLiteral("balance");
    case FieldFormat::Number: return QStringLiteral("number");
    case FieldFormat::Integer: return QStringLiteral("integer");
    case FieldFormat::Date: return QStringLiteral("date");
    }
    return QString();
}

} // namespace Reports
