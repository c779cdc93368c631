#include "foundation/ui/MaskedLineEdit.h"

#include "foundation/DateRules.h"
#include "foundation/ui/FieldStyle.h"

namespace {
// Our mask in the terms of QLineEdit's input masks: "_" is an optional
// digit, everything else an escaped literal, "_" the blank.
QString toInputMask(const QString &mask)
{
    QString m;
    for (const QChar c : mask) {
        if (c == QLatin1Char('_'))
            m += QLatin1Char('0');
        else
            m += QLatin1Char('\\') + c;
    }
    return m + QStringLiteral(";_");
}
} // namespace

MaskedLineEdit::MaskedLineEdit(const QString &mask, QWidget *parent)
    : QLineEdit(parent)
{
    setMask(mask);
    attachHighlight(this, HighlightKind::Mask);
}

void MaskedLineEdit::setMask(const QString &mask)
{
    m_mask = mask;
    setInputMask(toInputMask(mask));
    const QFontMetrics fm(font());
    setMinimumWidth(fm.horizontalAdvance(QString(mask.size() + 3, QLatin1Char('0'))));
}

QString MaskedLineEdit::maskText() const
{
    QString shown = displayText();
    // The line edit shows the blank for a place not typed; make sure the
    // text has the mask's full length even if it is shorter.
    if (shown.size() < m_mask.size())
        shown += m_mask.mid(shown.size());
    return shown.left(m_mask.size());
}

QString MaskedLineEdit::typedText() const
{
    const QString shown = maskText();
    QString typed;
    for (int i = 0; i < m_mask.size() && i < shown.size(); ++i)
        if (m_mask.at(i) == QLatin1Char('_') && shown.at(i) != QLatin1Char('_'))
            typed += shown.at(i);
    return typed;
}

void MaskedLineEdit::setMaskText(const QString &text)
{
    QString value;
    for (int i = 0; i < m_mask.size(); ++i) {
        if (m_mask.at(i) != QLatin1Char('_')) {
            value += m_mask.at(i);
            continue;
        }
        const QChar c = i < text.size() ? text.at(i) : QChar();
        value += c.isDigit() ? c : QLatin1Char(' ');
    }
    setText(value);
}

QDate MaskedLineEdit::date() const
{
    return DateRules::fromMaskText(maskText());
}

void MaskedLineEdit::setDate(const QDate &date)
{
    setMaskText(DateRules::toMaskText(date));
}
