#include "reports/ReportFrame.h"

#include "foundation/ConnectionProfile.h"
#include "foundation/Schema.h"
#include "reports/ReportExport.h"
#include "reports/ReportStream.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>

namespace Reports {

QString creditCompanyName() { return QStringLiteral("Tessel accounts and press management"); }
QString creditContact() { return QStringLiteral("Tessel software support"); }

QHash<QString, QString> HeaderTexts::byName() const
{
    return {{QStringLiteral("TLClientName"), clientName},
            {QStringLiteral("TLClientAddress"), clientAddress},
            {QStringLiteral("TLClientPhone"), clientPhone},
            {QStringLiteral("TLClientEmail"), clientEmail},
            {QStringLiteral("TLClientSaleTaxNo"), clientSaleTaxNo},
            {QStringLiteral("TLClientNTN"), clientNTN},
            {QStringLiteral("TLCompanyName"), companyName},
            {QStringLiteral("TLContact"), contact}};
}

// ------------------------------------------------------------ conditions

std::optional<ReportCondition> ReportCondition::parse(const QString &text)
{
    static const QRegularExpression re(QStringLiteral("^\\s*([A-Za-z_][A-Za-z0-9_]*)\\s*(>=|<=|<>|!=|=|<|>|~)(.*)$"));
    const auto m = re.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    ReportCondition c;
    c.field = m.captured(1);
    const QString op = m.captured(2);
    if (op == QLatin1String("=")) c.op = Op::Equal;
    else if (op == QLatin1String("<>") || op == QLatin1String("!=")) c.op = Op::NotEqual;
    else if (op == QLatin1String("<")) c.op = Op::Less;
    else if (op == QLatin1String("<=")) c.op = Op::LessOrEqual;
    else if (op == QLatin1String(">")) c.op = Op::Greater;
    else if (op == QLatin1String(">=")) c.op = Op::GreaterOrEqual;
    else c.op = Op::Like;
    c.value = m.captured(3);
    c.asTyped = true;
    return c;
}

QString ReportCondition::opText() const
{
    switch (op) {
    case Op::Equal: return QStringLiteral("=");
    case Op::NotEqual: return QStringLiteral("<>");
    case Op::Less: return QStringLiteral("<");
    case Op::LessOrEqual: return QStringLiteral("<=");
    case Op::Greater: return QStringLiteral(">");
    case Op::GreaterOrEqual: return QStringLiteral(">=");
    case Op::Like: return QStringLiteral("LIKE");
    }
    return QStringLiteral("=");
}

// ------------------------------------------------------------ formatting

namespace {

const QLocale &numberLocale()
{
    static const QLocale l(QLocale::English, QLocale::UnitedStates);
    return l;
}

QString trimRight(QString s)
{
    int n = s.size();
    while (n > 0 && s.at(n - 1).isSpace())
        --n;
    s.truncate(n);
    return s;
}

QVariant typedValue(const Row &row, int col, FieldFormat f)
{
    if (col < 0 || row.isNull(col))
        return QVariant();
    switch (f) {
    case FieldFormat::Money:
    case FieldFormat::Balance: {
        const auto m = row.money(col);
        return m ? QVariant::fromValue(*m) : QVariant();
    }
    case FieldFormat::Number: {
        bool ok = false;
        const double d = row.value(col).toDouble(&ok);
        return ok ? QVariant(d) : QVariant();
    }
    case FieldFormat::Integer: return QVariant(row.integer(col));
    case FieldFormat::Date: {
        const QDate d = row.date(col);
        return d.isValid() ? QVariant(d) : QVariant();
    }
    case FieldFormat::Text: return QVariant(trimRight(row.text(col)));
    }
    return QVariant();
}

} // namespace

QString formatValue(const QVariant &value, FieldFormat format, int decimals, bool blankZero)
{
    if (!value.isValid() || value.isNull())
        return QString();
    switch (format) {
    case FieldFormat::Money: {
        const Money m = value.value<Money>();
        return blankZero && m.isZero() ? QString() : m.toDisplayString();
    }
    case FieldFormat::Balance: {
        const Money m = value.value<Money>();
        if (m.isZero())
            return blankZero ? QString() : Money().toDisplayString();
        return m.abs().toDisplayString() + (m.isNegative() ? QStringLiteral(" CR") : QStringLiteral(" DR"));
    }
    case FieldFormat::Number: {
        const double d = value.toDouble();
        if (blankZero && d == 0)
            return QString();
        QString s = numberLocale().toString(d, 'f', decimals);
        if (s.contains(QLatin1Char('.'))) {
            while (s.endsWith(QLatin1Char('0')))
                s.chop(1);
            if (s.endsWith(QLatin1Char('.')))
                s.chop(1);
        }
        return s;
    }
    case FieldFormat::Integer: {
        const qint64 n = value.toLongLong();
        return blankZero && n == 0 ? QString() : QString::number(n);
    }
    case FieldFormat::Date: return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    case FieldFormat::Text: return trimRight(value.toString());
    }
    return value.toString();
}

QString amountInWords(const Money &amount)
{
    static const char *const ones[] = {"ZERO", "ONE", "TWO", "THREE", "FOUR", "FIVE", "SIX", "SEVEN", "EIGHT", "NINE",
                                       "TEN", "ELEVEN", "TWELVE", "THIRTEEN", "FOURTEEN", "FIFTEEN", "SIXTEEN",
                                       "SEVENTEEN", "EIGHTEEN", "NINETEEN"};
    static const char *const tens[] = {"", "", "TWENTY", "THIRTY", "FORTY", "FIFTY", "SIXTY", "SEVENTY", "EIGHTY", "NINETY"};
    auto below1000 = [&](int n) {
        QStringList w;
        if (n >= 100) {
            w << QString::fromLatin1(ones[n / 100]) << QStringLiteral("HUNDRED");
            n %= 100;
        }
        if (n >= 20)
            w << (QString::fromLatin1(tens[n / 10]) + (n % 10 ? QLatin1Char('-') + QString::fromLatin1(ones[n % 10]) : QString()));
        else if (n > 0)
            w << QString::fromLatin1(ones[n]);
        return w.join(QLatin1Char(' '));
    };
    static const char *const scales[] = {"", "THOUSAND", "MILLION", "BILLION", "TRILLION", "QUADRILLION"};
    const qint64 cents = amount.abs().cents();
    qint64 units = cents / 100;
    QStringList parts;
    if (units == 0)
        parts << QStringLiteral("ZERO");
    for (int scale = 0; units > 0; ++scale, units /= 1000) {
        const int chunk = int(units % 1000);
        if (chunk)
            parts.prepend(below1000(chunk) + (scale ? QLatin1Char(' ') + QString::fromLatin1(scales[scale]) : QString()));
    }
    return (amount.isNegative() ? QStringLiteral("MINUS ") : QString()) + parts.join(QLatin1Char(' '))
        + QStringLiteral(" AND %1/100 ONLY").arg(cents % 100, 2, 10, QLatin1Char('0'));
}

bool isReportSource(const QString &name)
{
    static const QSet<QString> allowed = [] {
        QSet<QString> s;
        for (const char *folder : {"views", "session"})
            for (const bool pg : {false, true})
                for (const Schema::ViewFile &v : Schema::viewFiles(QString::fromLatin1(folder), pg))
                    s.insert(v.name.toLower());
        for (const QString &n : DesignCatalogue::shippedNames()) {
            try {
                s.insert(DesignCatalogue().load(n).source.toLower());
            } catch (const DesignError &) {
            }
        }
        return s;
    }();
    return allowed.contains(name.toLower());
}

// ------------------------------------------------------------ frame

QString ReportFrame::userDesignDir()
{
    return AppSettings::load().designDir;
}

QImage ReportFrame::logo()
{
    const QString path = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("Logo.jpg"));
    QImage img;
    if (QFile::exists(path))
        img.load(path); // a damaged file loads as nothing: no logo
    return img;
}

HeaderTexts ReportFrame::headerTexts(SessionConnection &db, const std::optional<Lookups::Letterhead> &l)
{
    HeaderTexts h;
    h.companyName = creditCompanyName();
    h.contact = creditContact();
    if (l && !l->companyName.isEmpty()) {
        h.clientName = l->companyName;
        h.clientAddress = l->companyAddress;
        h.clientPhone = l->companyPhone;
        h.clientEmail = l->companyEmail;
        h.clientSaleTaxNo = l->companySaleTaxNo;
        h.clientNTN = l->companyNTN;
        return h;
    }
    const auto row = db.selectOne(QStringLiteral("SELECT TLClientName, TLClientAddress, TLClientPhone, TLClientEmail, "
                                                 "TLClientSaleTaxNo, TLClientNTN FROM tblTLClientInfo"));
    if (row) {
        h.clientName = trimRight(row->text(0));
        h.clientAddress = trimRight(row->text(1));
        h.clientPhone = trimRight(row->text(2));
        h.clientEmail = trimRight(row->text(3));
        h.clientSaleTaxNo = trimRight(row->text(4));
        h.clientNTN = trimRight(row->text(5));
    }
    return h;
}

namespace {

// Puts the session's report period back as it was when the report is read.
class PeriodScope
{
public:
    PeriodScope(SessionConnection &db, const QDate &from, const QDate &to)
        : m_db(db), m_from(db.reportFrom()), m_to(db.reportTo())
    {
        m_db.setReportPeriod(from, to);
    }
    ~PeriodScope()
    {
        try {
            m_db.setReportPeriod(m_from, m_to);
        } catch (...) {
        }
    }

private:
    SessionConnection &m_db;
    QDate m_from, m_to;
};

// A date column of a source that is not printed as a column (SQLite hands
// dates back as ISO text).
bool looksLikeDate(const QVariant &v)
{
    if (v.metaType().id() == QMetaType::QDate || v.metaType().id() == QMetaType::QDateTime)
        return true;
    static const QRegularExpression iso(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}( 00:00:00)?$"));
    return v.metaType().id() == QMetaType::QString && iso.match(v.toString()).hasMatch();
}

QString expandTemplate(const QString &tpl, const Row &row, const ReportDesign &d, int count)
{
    static const QRegularExpression re(QStringLiteral("\\{(#count|[A-Za-z_][A-Za-z0-9_]*)(?::(\\d+))?\\}"));
    QString out;
    int last = 0;
    auto it = re.globalMatch(tpl);
    while (it.hasNext()) {
        const auto m = it.next();
        out += tpl.mid(last, m.capturedStart() - last);
        last = m.capturedEnd();
        const QString name = m.captured(1);
        QString value;
        if (name == QLatin1String("#count")) {
            value = QString::number(count);
        } else {
            const int c = row.indexOf(name);
            const int col = d.columnIndex(name);
            FieldFormat f = col >= 0 ? d.columns.at(col).format : FieldFormat::Text;
            if (f == FieldFormat::Text && c >= 0 && looksLikeDate(row.value(c)))
                f = FieldFormat::Date;
            value = formatValue(typedValue(row, c, f), f, col >= 0 ? d.columns.at(col).decimals : 2);
        }
        if (!m.captured(2).isEmpty())
            value = value.left(m.captured(2).toInt());
        out += value;
    }
    out += tpl.mid(last);
    return out;
}

QString groupKey(const Row &row, const DesignGroup &g)
{
    const QVariant v = row.value(g.field);
    QString k = v.metaType().id() == QMetaType::QDate ? v.toDate().toString(Qt::ISODate) : trimRight(v.toString());
    if (g.keyLength > 0)
        k = k.left(g.keyLength);
    return k;
}

struct Sums
{
    QVector<Money> money;
    QVector<double> numbers;
    int count = 0;
    explicit Sums(int n = 0) : money(n), numbers(n, 0.0) {}
    void add(const ReportDesign &d, const QVector<QVariant> &values)
    {
        ++count;
        for (int i = 0; i < d.columns.size(); ++i) {
            const QVariant &v = values.at(i);
            if (!v.isValid() || v.isNull() || d.columns.at(i).running)
                continue;
            if (v.metaType() == QMetaType::fromType<Money>())
                money[i] += v.value<Money>();
            else if (d.columns.at(i).format == FieldFormat::Number || d.columns.at(i).format == FieldFormat::Integer)
                numbers[i] += v.toDouble();
        }
    }
};

ReportLine sumLine(const ReportDesign &d, const Sums &s, const QStringList &fields, ReportLine::Kind kind,
                   int level, const QString &label)
{
    ReportLine l;
    l.kind = kind;
    l.level = level;
    l.label = label;
    l.values.resize(d.columns.size());
    for (int i = 0; i < d.columns.size(); ++i)
        l.texts << QString();
    for (const QString &f : fields) {
        const int i = d.columnIndex(f);
        if (i < 0)
            continue;
        const DesignColumn &c = d.columns.at(i);
        if (c.format == FieldFormat::Money || c.format == FieldFormat::Balance)
            l.values[i] = QVariant::fromValue(s.money.at(i));
        else if (c.format == FieldFormat::Integer)
            l.values[i] = QVariant(qint64(qRound64(s.numbers.at(i))));
        else
            l.values[i] = QVariant(s.numbers.at(i));
        l.texts[i] = formatValue(l.values.at(i), c.format, c.decimals, false);
    }
    return l;
}

// Turns rows into report lines as they come: group headings and footers,
// running sums, totals. Holds the open groups' sums and the row before,
// never the rows read.
class LineMaker
{
public:
    LineMaker(const ReportDesign &d, const QStringList &columns, std::function<void(ReportLine &&)> sink)
        : m_d(d), m_emit(std::move(sink)), m_ncols(d.columns.size()), m_ngroups(d.groups.size()),
          m_colIndex(m_ncols), m_openKeys(m_ngroups), m_groupSums(m_ngroups, Sums(m_ncols)), m_total(m_ncols),
          m_running(m_ncols)
    {
        for (int i = 0; i < m_ncols; ++i)
            m_colIndex[i] = columns.indexOf(QRegularExpression(QStringLiteral("^%1$").arg(d.columns.at(i).field),
                                                               QRegularExpression::CaseInsensitiveOption));
    }

    void add(const Row &row, int sourceRow)
    {
        const ReportDesign &d = m_d;
        int changed = -1;
        for (int g = 0; g < m_ngroups; ++g) {
            if (!m_anyOpen || groupKey(row, d.groups.at(g)) != m_openKeys.at(g)) {
                changed = g;
                break;
            }
        }
        if (changed >= 0) {
            if (m_anyOpen)
                closeFrom(changed);
            for (int g = changed; g < m_ngroups; ++g) {
                m_openKeys[g] = groupKey(row, d.groups.at(g));
                m_groupSums[g] = Sums(m_ncols);
                ReportLine h;
                h.kind = ReportLine::Kind::GroupHeader;
                h.level = g;
                h.label = expandTemplate(d.groups.at(g).header, row, d, 0);
                h.values.resize(m_ncols);
                for (int i = 0; i < m_ncols; ++i)
                    h.texts << QString();
                if (!h.label.isEmpty())
                    m_emit(std::move(h));
            }
            m_running.fill(Money());
        }
        m_anyOpen = true;

        ReportLine l;
        l.kind = ReportLine::Kind::Detail;
        l.level = m_ngroups;
        l.sourceRow = sourceRow;
        l.values.resize(m_ncols);
        l.texts.reserve(m_ncols);   // exactly: a long ledger holds hundreds of thousands
        for (int i = 0; i < m_ncols; ++i) {
            const DesignColumn &c = d.columns.at(i);
            QVariant v = typedValue(row, m_colIndex.at(i), c.format);
            if (c.running) {
                const Money m = v.isValid() ? v.value<Money>() : Money();
                m_running[i] += m;
                v = QVariant::fromValue(m_running.at(i));
            }
            l.values[i] = v;
            l.texts << formatValue(v, c.format, c.decimals, c.blankZero);
        }
        if (!d.emphasisField.isEmpty())
            l.emphasis = trimRight(row.text(d.emphasisField)).endsWith(d.emphasisSuffix);
        for (int g = 0; g < m_ngroups; ++g)
            m_groupSums[g].add(d, l.values);
        m_total.add(d, l.values);
        m_last = row;
        m_emit(std::move(l));
    }

    void finish()
    {
        const ReportDesign &d = m_d;
        if (m_anyOpen && m_ngroups > 0)
            closeFrom(0);
        const int dr = d.columnIndex(d.balanceDebit), cr = d.columnIndex(d.balanceCredit);
        if (dr >= 0 && cr >= 0 && m_anyOpen) {
            // The books do not balance until every opening balance is in: the
            // difference shows on the short side, so the accountant sees at
            // once where it comes from, and the totals agree.
            const Money diff = m_total.money.at(dr) - m_total.money.at(cr);
            if (!diff.isZero()) {
                const int shortSide = diff.isNegative() ? dr : cr;
                Sums one(m_ncols);
                one.money[shortSide] = diff.abs();
                m_emit(sumLine(d, one, {d.columns.at(shortSide).field}, ReportLine::Kind::GroupFooter, 0, d.balanceCaption));
                m_total.money[shortSide] += diff.abs();
            }
        }
        if (!d.totals.isEmpty() || d.countInTotals) {
            QString label = d.totalsCaption;
            if (d.countInTotals)
                label = QStringLiteral("%1 (%2)").arg(label).arg(m_total.count);
            m_emit(sumLine(d, m_total, d.totals, ReportLine::Kind::Total, 0, label));
        }
    }

private:
    void closeFrom(int level)
    {
        for (int g = m_ngroups - 1; g >= level; --g) {
            const DesignGroup &grp = m_d.groups.at(g);
            if (!grp.footer.isEmpty() || !grp.sums.isEmpty()) {
                const QString label = expandTemplate(grp.footer, m_last, m_d, m_groupSums.at(g).count);
                m_emit(sumLine(m_d, m_groupSums.at(g), grp.sums, ReportLine::Kind::GroupFooter, g, label));
            }
        }
    }

    const ReportDesign &m_d;
    std::function<void(ReportLine &&)> m_emit;
    int m_ncols, m_ngroups;
    QVector<int> m_colIndex;
    QVector<QString> m_openKeys;
    QVector<Sums> m_groupSums;
    Sums m_total;
    QVector<Money> m_running;
    Row m_last;
    bool m_anyOpen = false;
};

void buildLines(RenderedReport &r)
{
    r.lines.reserve(r.rows.size() + 16);
    LineMaker maker(r.design, r.rows.columns, [&r](ReportLine &&l) { r.lines << std::move(l); });
    for (int ri = 0; ri < r.rows.size(); ++ri)
        maker.add(r.rows.at(ri), ri);
    maker.finish();
}

QString periodLine(const ReportRequest &req, const ReportDesign &d)
{
    if (!d.showPeriod || !req.hasPeriod())
        return QString();
    const QString from = !req.fromText.isEmpty() ? req.fromText
        : (req.from.isValid() ? req.from.toString(QStringLiteral("dd/MM/yyyy")) : QStringLiteral("01/01/1900"));
    const QString to = !req.toText.isEmpty() ? req.toText : req.to.toString(QStringLiteral("dd/MM/yyyy"));
    QString t = d.periodText;
    t.replace(QLatin1String("{from}"), from);
    t.replace(QLatin1String("{to}"), to);
    return t;
}

QString asAtLine(const RenderedReport &r)
{
    const ReportDesign &d = r.design;
    if (d.asAtField.isEmpty())
        return QString();
    const QDate open(9999, 12, 31);
    QDate at = r.request.hasPeriod() && r.request.to < open ? r.request.to : QDate();
    if (!at.isValid() && !r.rows.isEmpty()) {
        const QDate field = r.rows.at(0).date(d.asAtField);
        if (field.isValid() && field < open)
            at = field;
    }
    if (!at.isValid())
        at = r.printedAt.date();
    return QStringLiteral("AS AT %1").arg(at.toString(QStringLiteral("dd/MM/yyyy")));
}

enum class ValueKind { Text, Number, Date };

// What kind of value a field of the source holds: the design's format when
// the field is one of its columns, else the first value found.
ValueKind kindOf(SessionConnection &db, const QString &source, const ReportDesign &d, const QString &field)
{
    const int col = d.columnIndex(field);
    if (col >= 0) {
        switch (d.columns.at(col).format) {
        case FieldFormat::Money:
        case FieldFormat::Balance:
        case FieldFormat::Number:
        case FieldFormat::Integer: return ValueKind::Number;
        case FieldFormat::Date: return ValueKind::Date;
        case FieldFormat::Text: break;
        }
    }
    if (db.dialect() == SessionConnection::Dialect::PostgreSQL) {
        // The server knows each column's type, views' included.
        const auto type = db.selectOne(QStringLiteral("SELECT data_type FROM information_schema.columns "
                                                      "WHERE table_name = ? AND column_name = ? LIMIT 1"),
                                       {source.toLower(), field.toLower()});
        const QString t = type ? type->text(0) : QString();
        if (t.startsWith(QLatin1String("date")) || t.startsWith(QLatin1String("timestamp")))
            return ValueKind::Date;
        static const QStringList numeric = {QStringLiteral("numeric"), QStringLiteral("integer"), QStringLiteral("bigint"),
                                            QStringLiteral("smallint"), QStringLiteral("double precision"), QStringLiteral("real")};
        return numeric.contains(t) ? ValueKind::Number : ValueKind::Text;
    }
    // `source` and `field` are checked identifiers of the source.
    const auto row = db.selectOne(QStringLiteral("SELECT ") + field + QStringLiteral(" FROM ") + source + QStringLiteral(" WHERE ")
                                  + field + QStringLiteral(" IS NOT NULL LIMIT 1"));
    if (!row)
        return ValueKind::Text;
    const QVariant v = row->value(0);
    if (looksLikeDate(v))
        return ValueKind::Date;
    switch (v.metaType().id()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::LongLong: case QMetaType::ULongLong:
    case QMetaType::Double: case QMetaType::Float:
        return ValueKind::Number;
    default:
        break;
    }
    if (v.metaType() == QMetaType::fromType<Money>())
        return ValueKind::Number;
    return ValueKind::Text;
}

// A value typed on a command line, as the field's type: the same answer
// on both engines, and a clear refusal of a value that does not fit.
QVariant typedConditionValue(SessionConnection &db, const QString &source, const ReportDesign &d, const ReportCondition &c)
{
    const QString text = c.value.toString().trimmed();
    static const QRegularExpression dateShape(QStringLiteral("^\\d{1,2}/\\d{1,2}/\\d{4}$"));
    const bool looksDate = dateShape.match(text).hasMatch();
    const QDate date = QDate::fromString(text, QStringLiteral("dd/MM/yyyy"));
    if (looksDate && !date.isValid())
        throw DesignError(QStringLiteral("%1: \"%2\" is not a date dd/mm/yyyy").arg(c.field, text));
    if (c.op == ReportCondition::Op::Like)
        return c.value.toString();
    switch (kindOf(db, source, d, c.field)) {
    case ValueKind::Date:
        if (!date.isValid())
            throw DesignError(QStringLiteral("%1: \"%2\" is not a date dd/mm/yyyy").arg(c.field, text));
        return date;
    case ValueKind::Number: {
        static const QRegularExpression number(QStringLiteral("^-?\\d{1,15}(\\.\\d{1,6})?$"));
        if (!number.match(text).hasMatch())
            throw DesignError(QStringLiteral("%1: \"%2\" is not a number").arg(c.field, text));
        if (!text.contains(QLatin1Char('.')))
            return text.toLongLong();
        if (text.section(QLatin1Char('.'), 1).size() <= 2)
            if (const auto m = Money::parse(text))
                return m->toVariant();
        return text.toDouble();
    }
    case ValueKind::Text:
        break;
    }
    return looksDate ? QVariant(date) : QVariant(c.value.toString());
}

} // namespace

RenderedReport ReportFrame::render(SessionConnection &db, const ReportRequest &request)
{
    return render(db, request, DesignCatalogue(userDesignDir()));
}

namespace {

struct Statement
{
    QString sql;
    QVariantList params;
};

// Everything before the rows are read: the design, the letterhead, the
// period (set for this session while `period` lives), the fields checked,
// and the statement that reads the rows.
Statement beginReport(SessionConnection &db, const ReportRequest &request, const DesignCatalogue &catalogue,
                      RenderedReport &r, std::optional<PeriodScope> &period)
{
    r.request = request;
    r.design = catalogue.load(request.design, &r.warnings);
    if (!request.signatures.isEmpty())
        r.design.signatures = request.signatures;
    const ReportDesign &d = r.design;
    const QString source = request.source.isEmpty() ? d.source : request.source;
    static const QRegularExpression ident(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    if (!ident.match(source).hasMatch())
        throw DesignError(QStringLiteral("\"%1\" is not a report source").arg(source));
    if (!isReportSource(source))
        throw DesignError(QStringLiteral("%1: reports read only the program's views and the tables of its own designs; "
                                         "\"%2\" is not one of them")
                              .arg(QDir::toNativeSeparators(d.origin), source));

    r.header = ReportFrame::headerTexts(db, request.letterhead);
    r.logo = ReportFrame::logo();
    r.printedAt = QDateTime::currentDateTime();
    r.heading = !request.heading.isEmpty() ? request.heading : (!request.title.isEmpty() ? request.title : d.title);
    r.periodText = periodLine(request, d);

    if (request.hasPeriod()) {
        const QDate from = request.from.isValid() ? request.from : QDate(1900, 1, 1);
        if (request.writePeriodRow && !db.isReadOnly()) { // an archived year is only read
            Transaction tx(db);
            if (request.letterhead && !request.letterhead->companyName.isEmpty())
                db.execute(QStringLiteral("UPDATE tblTLClientInfo SET TLClientName = ?, TLClientAddress = ?, SDate = ?, EDate = ?"),
                           {r.header.clientName, r.header.clientAddress, from, request.to});
            else
                db.execute(QStringLiteral("UPDATE tblTLClientInfo SET SDate = ?, EDate = ?"), {from, request.to});
            tx.commit();
        }
        period.emplace(db, from, request.to);
    }

    // The source's columns, to check every field named by the design and
    // the selection before anything is read.
    // `source` is a checked identifier (above); values only ever go in bound.
    const QueryResult probe = db.select(QStringLiteral("SELECT * FROM ") + source + QStringLiteral(" WHERE 1 = 0"));
    QSet<QString> have;
    for (const QString &c : probe.columns)
        have.insert(c.toLower());
    for (const QString &f : d.fieldsUsed())
        if (!have.contains(f.toLower()))
            throw DesignError(QStringLiteral("%1: the field \"%2\" is not in the source \"%3\"")
                                  .arg(QDir::toNativeSeparators(d.origin), f, source));

    QStringList where;
    QVariantList params;
    for (const ReportCondition &c : request.conditions) {
        if (!ident.match(c.field).hasMatch() || !have.contains(c.field.toLower()))
            throw DesignError(QStringLiteral("The selection names the field \"%1\", which is not in the source \"%2\"")
                                  .arg(c.field, source));
        where << c.field + QLatin1Char(' ') + c.opText() + QStringLiteral(" ?");
        params << (c.asTyped ? typedConditionValue(db, source, d, c) : c.value);
    }
    QStringList order;
    for (const DesignGroup &g : d.groups)
        order << g.field;
    for (const QString &o : d.orderBy) {
        if (!have.contains(o.section(QLatin1Char(' '), 0, 0).toLower()))
            throw DesignError(QStringLiteral("%1: the order field \"%2\" is not in the source \"%3\"")
                                  .arg(QDir::toNativeSeparators(d.origin), o, source));
        order << o;
    }
    QString sql = QStringLiteral("SELECT * FROM ") + source;
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where.join(QStringLiteral(" AND "));
    if (!order.isEmpty())
        sql += QStringLiteral(" ORDER BY ") + order.join(QStringLiteral(", "));
    return {sql, params};
}

// The texts that need the rows read: the date of "AS AT" and the total in
// words (from the report's last line).
void endReport(RenderedReport &r, const ReportLine *lastLine)
{
    const ReportDesign &d = r.design;
    r.asAtText = asAtLine(r);
    if (!d.wordsField.isEmpty() && lastLine) {
        const QVariant v = lastLine->values.value(d.columnIndex(d.wordsField));
        if (lastLine->kind == ReportLine::Kind::Total && v.isValid())
            r.amountWords = amountInWords(v.value<Money>());
    }
}

// The report's rows read forward and made into lines, each handed to
// `take` as it is made; `shell` gets the design, the header texts and the
// first row. Returns the number of rows read.
qint64 streamLines(SessionConnection &db, const ReportRequest &request, const DesignCatalogue &catalogue,
                   RenderedReport &shell, const std::function<void(const ReportLine &)> &take)
{
    std::optional<PeriodScope> period;
    const Statement st = beginReport(db, request, catalogue, shell, period);
    std::optional<LineMaker> maker;
    ReportLine last;
    bool any = false;
    int sourceRow = 0;
    const qint64 rows = db.forEachRow(
        st.sql, st.params,
        [&](const Row &row) {
            if (shell.rows.isEmpty())
                shell.rows.rows << row; // the first row: the document's fields and its date
            maker->add(row, sourceRow++);
        },
        [&](const QStringList &columns) {
            shell.rows.columns = columns;
            maker.emplace(shell.design, columns, [&](ReportLine &&l) {
                take(l);
                last = std::move(l);
                any = true;
            });
        });
    period.reset();
    if (maker)
        maker->finish();
    endReport(shell, any ? &last : nullptr);
    return rows;
}

// A PDF read, laid out and painted a page at a time (see writeFile()).
bool streamPdf(SessionConnection &db, const ReportRequest &request, const DesignCatalogue &catalogue,
               const QString &path, QString *error, ReportFrame::WrittenReport *written)
{
    {
        QFile probe(path);
        if (!probe.open(QIODevice::WriteOnly)) {
            if (error)
                *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), probe.errorString());
            return false;
        }
    }
    detail::LineSpool spool;
    if (!spool.open(error))
        return false;
    detail::ColumnNeeds needs;
    RenderedReport shell;
    const qint64 rows = streamLines(db, request, catalogue, shell, [&](const ReportLine &l) {
        needs.note(shell.design, l);
        spool.append(l);
    });
    const int pages = detail::writeSpooledPdf(shell, needs, spool, path, error);
    if (written) {
        written->rows = rows;
        written->pages = qMax(0, pages);
    }
    return pages >= 0;
}

// A CSV written line by line as the rows are read; the file takes the
// place of one already there only when whole.
bool streamCsv(SessionConnection &db, const ReportRequest &request, const DesignCatalogue &catalogue,
               const QString &path, QString *error, ReportFrame::WrittenReport *written)
{
    detail::CsvStream csv;
    if (!csv.open(path, error))
        return false;
    RenderedReport shell;
    bool begun = false;
    const qint64 rows = streamLines(db, request, catalogue, shell, [&](const ReportLine &l) {
        if (!begun)
            csv.begin(shell.design);
        begun = true;
        csv.add(shell, l);
    });
    if (!begun)
        csv.begin(shell.design);
    if (written) {
        written->rows = rows;
        written->pages = 0;
    }
    return csv.finish(error);
}

} // namespace

RenderedReport ReportFrame::render(SessionConnection &db, const ReportRequest &request,
                                   const DesignCatalogue &catalogue)
{
    RenderedReport r;
    std::optional<PeriodScope> period;
    const Statement st = beginReport(db, request, catalogue, r, period);
    r.rows = db.select(st.sql, st.params);
    period.reset();
    buildLines(r);
    endReport(r, r.lines.isEmpty() ? nullptr : &r.lines.constLast());
    return r;
}

bool ReportFrame::writeFile(SessionConnection &db, const ReportRequest &request, const QString &path,
                            QString *error, WrittenReport *written)
{
    return writeFile(db, request, path, DesignCatalogue(userDesignDir()), error, written);
}

bool ReportFrame::writeFile(SessionConnection &db, const ReportRequest &request, const QString &path,
                            const DesignCatalogue &catalogue, QString *error, WrittenReport *written)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix != QLatin1String("pdf") && suffix != QLatin1String("csv") && suffix != QLatin1String("xlsx")) {
        if (error)
            *error = QStringLiteral("%1: the file must end in .pdf, .xlsx or .csv").arg(QDir::toNativeSeparators(path));
        return false;
    }
    const bool pdf = suffix == QLatin1String("pdf");
    if (suffix == QLatin1String("csv"))
        return streamCsv(db, request, catalogue, path, error, written);
    const ReportDesign design = catalogue.load(request.design);
    if (!pdf || design.chart || design.halfPage) {
        // A workbook, a chart or a half-page document: the whole report
        // first (these are short, or never laid out).
        const RenderedReport r = render(db, request, catalogue);
        if (written) {
            written->rows = r.rows.size();
            written->pages = pdf ? r.pageCount() : 0;
        }
        return exportFile(r, path, error);
    }

    return detail::writeReplacing(path, error, [&](const QString &part) {
        return streamPdf(db, request, catalogue, part, error, written);
    });
}

// ------------------------------------------------------------ drill-down

std::optional<ReportRequest> RenderedReport::drillDown(int line) const
{
    if (!design.link || line < 0 || line >= lines.size() || lines.at(line).kind != ReportLine::Kind::Detail)
        return std::nullopt;
    const Row &row = rows.at(lines.at(line).sourceRow);
    ReportRequest req;
    req.design = design.link->design;
    req.title = expandTemplate(design.link->title, row, design, 0);
    req.from = request.from;
    req.to = request.to;
    req.fromText = request.fromText;
    req.toText = request.toText;
    req.writePeriodRow = false;
    req.letterhead = request.letterhead;
    static const QRegularExpression iso(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
    for (const auto &k : design.link->keys) {
        QVariant v = row.value(k.second);
        if (v.metaType().id() == QMetaType::QString) {
            const QString s = trimRight(v.toString());
            v = iso.match(s).hasMatch() ? QVariant(QDate::fromString(s, Qt::ISODate)) : QVariant(s);
        }
        req.conditions << ReportCondition::equal(k.first, v);
    }
    return req;
}

} // namespace Reports
