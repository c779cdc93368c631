#pragma once

class QWidget;

// The colours of the field that has the focus: white text on green-blue,
// the whole text selected so that typing replaces it; white and black
// again when the focus leaves.
enum class HighlightKind {
    Auto,   // by the field: Mask for a masked field, Field otherwise
    Field,  // text fields and combos
    Field2, // the combos of the start-up screen
    Mask,   // masked fields
};

void HighlightField(QWidget *field);
void HighlightField2(QWidget *field);
void HighlightMaskField(QWidget *field);
void RestoreField(QWidget *field);

// Makes the field highlight itself on entry and restore itself on leaving.
// Attaching twice does nothing more.
void attachHighlight(QWidget *field, HighlightKind kind = HighlightKind::Auto);
bool hasHighlight(const QWidget *field);
