#pragma once

#include <QDate>
#include <QLineEdit>

// A field typed through a fixed mask: "_" marks a place for a digit, every
// other character stands fixed. Masks in use: "__/__/____" (date),
// "__-__-___" (account code), "__-__-____-___-__" (sales-tax number),
// "_______-_" (tax number), "____" (year).
//
// It highlights itself while it has the focus.
class MaskedLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    static QString dateMask() { return QStringLiteral("__/__/____"); }
    static QString accountCodeMask() { return QStringLiteral("__-__-___"); }
    static QString saleTaxNoMask() { return QStringLiteral("__-__-____-___-__"); }
    static QString taxNoMask() { return QStringLiteral("_______-_"); }
    static QString yearMask() { return QStringLiteral("____"); }

    explicit MaskedLineEdit(const QString &mask = dateMask(), QWidget *parent = nullptr);

    QString mask() const { return m_mask; }
    void setMask(const QString &mask);

    // The whole field as shown, with "_" in the places not typed.
    QString maskText() const;
    // Only what was typed into the places, without the fixed characters.
    QString typedText() const;
    // Fills the places from a text shaped like the mask; characters that
    // do not fit a place leave it empty.
    void setMaskText(const QString &text);
    void clearMask() { setMaskText(QString()); }
    bool isComplete() const { return !maskText().contains(QLatin1Char('_')); }

    bool isDateMask() const { return m_mask == dateMask(); }
    // For the date mask: the date shown (invalid when incomplete or not a
    // day of the calendar), and writing one as dd/mm/yyyy.
    QDate date() const;
    void setDate(const QDate &date);

private:
    QString m_mask;
};
