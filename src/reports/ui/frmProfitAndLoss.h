#pragma once

#include "foundation/ui/BaseScreen.h"

class CommandGate;
class MaskedLineEdit;
class QFrame;
class QLabel;
class QPushButton;
class QRadioButton;

// Profit and loss, the list of creditors and the list of debtors: one
// screen with a frame for each, of which the menu entry shows one.
class frmProfitAndLoss : public BaseScreen
{
    Q_OBJECT
public:
    enum class Frame { ProfitAndLoss, CreditList, DebitList };

    explicit frmProfitAndLoss(QWidget *parent = nullptr);

    // Hides the three frames and shows one, with its title.
    void showFrame(Frame frame);
    void onOpened() override;

    QFrame *frOuterProfitAndLoss = nullptr;
    QLabel *lblProfitAndLoss = nullptr;
    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QRadioButton *optProfitAndLoss = nullptr;
    QPushButton *cmdProfitAndLoss = nullptr;
    QPushButton *cmdCancel = nullptr;

    QFrame *frOuterCreditList = nullptr;
    QRadioButton *optAllPayable = nullptr;
    QRadioButton *optCreditListTwoDates = nullptr;
    MaskedLineEdit *mskDateFromCreditList = nullptr;
    MaskedLineEdit *mskDateToCreditList = nullptr;
    QPushButton *cmdPrintCreditList = nullptr;
    QPushButton *cmdCancelCreditList = nullptr;

    QFrame *frOuterDebitList = nullptr;
    QRadioButton *optAllReceivable = nullptr;
    QRadioButton *optDebitListTwoDates = nullptr;
    MaskedLineEdit *mskDateFromDebitList = nullptr;
    MaskedLineEdit *mskDateToDebitList = nullptr;
    QPushButton *cmdPrintDebitList = nullptr;
    QPushButton *cmdCancelDebitList = nullptr;

private:
    void loadDates();
    void listOptionChanged();
    void printProfitAndLoss();
    void printList(bool credit);

    bool m_loaded = false;
};
