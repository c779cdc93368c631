#pragma once

#include "sales/JobCardRules.h"
#include "sales/ui/JobPaperScreen.h"

#include <QHash>

class MaskedLineEdit;
class QComboBox;
class QFrame;
class QLineEdit;

// "JOB CARD DETAIL": the press's work ticket, one card per job. The press
// fields are combos offering every value typed into them before. Typing a
// card's number brings the card up; a number without a card empties the
// fields for a new card under it.
class frmJobCard : public JobPaperScreen
{
    Q_OBJECT
public:
    explicit frmJobCard(QWidget *parent = nullptr);

    void startEnter();
    void startModify();
    void startDelete();
    void startView();
    void onOpened() override;

    QFrame *frOuter = nullptr;
    QLineEdit *txtJobCardNo = nullptr;
    QComboBox *cmbPartyPONo = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *txtPartyCode = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    MaskedLineEdit *mskIssueDate = nullptr;
    MaskedLineEdit *mskPODate = nullptr;
    QLineEdit *txtQuantity = nullptr;
    QComboBox *cmbJobDetail = nullptr;
    QComboBox *cmbPaper = nullptr;
    QComboBox *cmbPaperSize = nullptr;
    QComboBox *cmbCuttingSize = nullptr;
    QComboBox *cmbPrinting = nullptr;
    QComboBox *cmbMachine = nullptr;
    QComboBox *cmbDesign = nullptr;
    QComboBox *cmbPositive = nullptr;
    QComboBox *cmbPlate = nullptr;
    QComboBox *cmbDie = nullptr;
    QComboBox *cmbBleach = nullptr;
    QComboBox *cmbLamination = nullptr;
    QComboBox *cmbOther = nullptr;
    QComboBox *cmbStatus = nullptr;

    // The card last loaded or left by its number: the one printed.
    qint64 printJobCardNo() const { return m_printJobCardNo; }
    QComboBox *pressCombo(const QString &column) const { return m_press.value(column); }

private:
    void build();
    void wire();
    void setMode(Mode mode, const QString &title);

    void proposeNumber();
    void loadJobCardLists();
    void partyChanged();
    void partyOrderLeft();
    void numberLeft();
    void clearCard();

    JobCard entered() const;
    bool allowed(JobCardRules::Command command);
    void save();
    void modify();
    void remove();
    void printCard();

    QHash<QString, QComboBox *> m_press;
    qint64 m_printJobCardNo = 0;
    QString m_proposedNo;
};
