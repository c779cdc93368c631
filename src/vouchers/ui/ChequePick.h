#pragma once

#include "vouchers/VoucherRules.h"

#include <QObject>
#include <optional>

class QCheckBox;
class QComboBox;

// The post-dated cheque a line settles: the POSTED CHEQUE box and the open
// cheques by description and by number, each following the other, both
// usable only while the box is ticked.
class ChequePick : public QObject
{
    Q_OBJECT
public:
    ChequePick(QCheckBox *posted, QComboBox *description, QComboBox *number, QObject *parent = nullptr);

    // The cheques still "POST DATED", keeping what is typed.
    void load();
    // The cheque of the line, when the box is ticked.
    std::optional<ChequeLink> link() const;

private:
    QCheckBox *m_posted;
    QComboBox *m_description;
    QComboBox *m_number;
};
