#include "foundation/ui/FieldStyle.h"

#include "foundation/ui/MaskedLineEdit.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>

namespace {

const QColor kHighlightBack(0x01, 0x7C, 0x6A);
const char *kAttachedProperty = "tesselHighlight";

QLineEdit *lineEditOf(QWidget *field)
{
    if (auto *e = qobject_cast<QLineEdit *>(field))
        return e;
    if (auto *c = qobject_cast<QComboBox *>(field))
        return c->lineEdit();
    return nullptr;
}

void paint(QWidget *field, const QColor &back, const QColor &fore, bool buttonToo)
{
    QPalette pal = field->palette();
    for (auto group : {QPalette::Active, QPalette::Inactive}) {
        pal.setColor(group, QPalette::Base, back);
        pal.setColor(group, QPalette::Text, fore);
        if (buttonToo) {
            pal.setColor(group, QPalette::Button, back);
            pal.setColor(group, QPalette::ButtonText, fore);
        }
    }
    field->setPalette(pal);
    if (auto *c = qobject_cast<QComboBox *>(field); c && c->lineEdit())
        c->lineEdit()->setPalette(pal);
}

void selectWhole(QWidget *field)
{
    QLineEdit *edit = lineEditOf(field);
    if (!edit)
        return;
    edit->selectAll();
    // A mouse click that gave the focus would place the cursor after this;
    // select once more when the click is done.
    QPointer<QLineEdit> guard(edit);
    QTimer::singleShot(0, edit, [guard] {
        if (guard && guard->hasFocus())
            guard->selectAll();
    });
}

void highlight(QWidget *field)
{
    if (!field)
        return;
    paint(field, kHighlightBack, Qt::white, qobject_cast<QComboBox *>(field) != nullptr);
    selectWhole(field);
}

class Highlighter : public QObject
{
public:
    Highlighter(QWidget *field, HighlightKind kind)
        : QObject(field), m_kind(kind)
    {
        field->installEventFilter(this);
        if (auto *c = qobject_cast<QComboBox *>(field); c && c->lineEdit())
            c->lineEdit()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *field = qobject_cast<QWidget *>(parent());
        if (event->type() == QEvent::FocusIn) {
            switch (m_kind) {
            case HighlightKind::Field2: HighlightField2(field); break;
            case HighlightKind::Mask: HighlightMaskField(field); break;
            default: HighlightField(field); break;
            }
        } else if (event->type() == QEvent::FocusOut) {
            // A combo's own popup takes the focus for a moment: the field
            // is still being worked in.
            if (auto *c = qobject_cast<QComboBox *>(field); c && c->view() && c->view()->isVisible())
                return false;
            if (watched == field || !field->hasFocus())
                RestoreField(field);
        }
        return false;
    }

private:
    HighlightKind m_kind;
};

} // namespace

void HighlightField(QWidget *field) { highlight(field); }
void HighlightField2(QWidget *field) { highlight(field); }
void HighlightMaskField(QWidget *field) { highlight(field); }

void RestoreField(QWidget *field)
{
    if (!field)
        return;
    const QPalette app = QApplication::palette(field);
    QPalette pal = field->palette();
    for (auto group : {QPalette::Active, QPalette::Inactive}) {
        pal.setColor(group, QPalette::Base, Qt::white);
        pal.setColor(group, QPalette::Text, Qt::black);
        pal.setColor(group, QPalette::Button, app.color(group, QPalette::Button));
        pal.setColor(group, QPalette::ButtonText, app.color(group, QPalette::ButtonText));
    }
    field->setPalette(pal);
    if (auto *c = qobject_cast<QComboBox *>(field); c && c->lineEdit())
        c->lineEdit()->setPalette(pal);
}

void attachHighlight(QWidget *field, HighlightKind kind)
{
    if (!field || field->property(kAttachedProperty).toBool())
        return;
    if (kind == HighlightKind::Auto)
        kind = qobject_cast<MaskedLineEdit *>(field) ? HighlightKind::Mask : HighlightKind::Field;
    field->setProperty(kAttachedProperty, true);
    new Highlighter(field, kind);
}

bool hasHighlight(const QWidget *field)
{
    return field && field->property(kAttachedProperty).toBool();
}
