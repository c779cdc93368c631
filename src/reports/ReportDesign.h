#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>
#include <stdexcept>

// A report design: what a report reads, how it orders and groups the rows,
// which columns it prints and how, and what the page carries around them.
// Designs are JSON files named after the report (crVoucherListing.json),
// shipped inside the program under resources/designs/ and overridable by a
// user's own copy in the design folder of the settings file. The format is
// described in docs/report-designs.md.
namespace Reports {

class DesignError : public std::runtime_error
{
public:
    explicit DesignError(const QString &message)
        : std::runtime_error(message.toStdString()), m_message(message) {}
    QString message() const { return m_message; }

private:
    QString m_message;
};

enum class Align { Left, Center, Right };

// How a value is printed (and typed in a spreadsheet).
enum class FieldFormat {
    Text,     // as it stands
    Money,    // 1,234.50 (negative with a minus)
    Balance,  // 1,234.50 DR / 1,234.50 CR from a signed amount
    Number,   // 1,234.5 with up to `decimals` places
    Integer,  // 1234
    Date      // dd/mm/yyyy
};

struct DesignColumn
{
    QString caption;
    QString field;
    double width = 10;           // relative to the other columns
    Align align = Align::Left;
    FieldFormat format = FieldFormat::Text;
    int decimals = 2;            // Number only
    bool blankZero = false;      // a zero amount prints as nothing
    bool running = false;        // running sum of the field, restarting with the innermost group
};

struct DesignGroup
{
    QString field;
    int keyLength = 0;           // group on the first N characters only (0: the whole value)
    QString header;              // template, fields of the group's first row: "{PartyCode} {PartyName}"
    QString footer;              // template, may use {#count}
    QStringList sums;            // fields summed under their columns in the footer
    bool newPage = false;        // each group starts a page
};

struct DesignField
{
    QString caption;
    QString field;
    FieldFormat format = FieldFormat::Text;
};

// A linked report opened by a double click on a detail line (an account's
// ledger under a balance line, a voucher under a ledger line).
struct DesignLink
{
    QString name;                // the subreport's name, e.g. "LedgerLink"
    QString design;              // design opened
    QString title;               // template over the clicked row
    QVector<QPair<QString, QString>> keys; // target field <- this row's field
};

// A chart printed after the report's pages: one category per field of
// `values` (the months of a comparison), one series per detail row named by
// its `label` field (or one series when there is no label), and the sum of
// each category shown above it.
struct DesignChart
{
    enum class Kind { Bar, Stacked, Line };
    Kind kind = Kind::Bar;
    QString label;               // field naming each row's series; empty: one series
    QStringList values;          // the categories, each a field of the source
    QStringList categories;      // their captions (default: the columns' captions)
    QString caption;             // the value axis
    int maxSeries = 8;           // rows beyond these are added up as "OTHERS"
};

struct ReportDesign
{
    QString name;                // crVoucherListing
    QString source;              // view or table read
    QString title;               // default heading
    QStringList orderBy;         // "Field" or "Field DESC", after the group fields
    bool landscape = false;
    bool strip = false;          // document form: no page footer
    bool showPeriod = false;
    QString periodText;          // template with {from} and {to}; default "FROM {from} TO {to}"
    QVector<DesignField> documentFields; // header fields of a document, from its first row
    QVector<DesignGroup> groups;
    QVector<DesignColumn> columns;
    QString totalsCaption;       // report footer
    QStringList totals;          // fields summed in the report footer
    bool countInTotals = false;  // report footer says how many lines
    QStringList signatures;      // captions of the signature line of a document
    QString emphasisField;       // detail rows whose field ends with emphasisSuffix print bold
    QString emphasisSuffix;
    std::optional<DesignLink> link;
    // "AS AT" line under the heading: the period's end, else this field of
    // the first row (a statement up to a date), else the day of printing.
    QString asAtField;
    // A debit and a credit column that must total alike (a trial balance,
    // a balance sheet): when they do not, a line with `balanceCaption` puts
    // the difference on the short side before the totals.
    QString balanceDebit, balanceCredit, balanceCaption;
    // A document that prints on the top half of a portrait A4 page (two to
    // a sheet), with the total of `wordsField` in words under the totals.
    bool halfPage = false;
    QString wordsField;
    // A table ruled as a form is: the columns boxed, a rule under every
    // line (a tax invoice).
    bool ruled = false;
    std::optional<DesignChart> chart;

    QString origin;              // where it was read from, for messages

    int columnIndex(const QString &field) const;
    // Every field the design reads from its source.
    QStringList fieldsUsed() const;
};

// Reads a design from its JSON text. Throws DesignError naming `origin` and
// the fault.
ReportDesign parseDesign(const QByteArray &json, const QString &origin);

// Designs by name: the user's folder first, then those shipped.
class DesignCatalogue
{
public:
    // `userDir` empty: shipped designs only.
    explicit DesignCatalogue(QString userDir = QString());

    // The design `name`. A user's file that cannot be read is passed over
    // for the shipped one and the fault is added to `warnings` (file and
    // fault, for a message). Throws DesignError when no usable design has
    // that name.
    ReportDesign load(const QString &name, QStringList *warnings = nullptr) const;
    bool contains(const QString &name) const;

    static QStringList shippedNames();
    static QString shippedPath(const QString &name);

    QString userDir() const { return m_userDir; }

private:
    QString m_userDir;
};

QString formatName(FieldFormat f);

} // namespace Reports
