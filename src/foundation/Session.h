#pragma once

#include "foundation/SessionConnection.h"

#include <QDate>
#include <QString>
#include <memory>

// The state of this workstation's run: the one connection, who is logged
// on, the letterhead in use, the dates, and the mode variables the menu
// sets for the screens it opens. Filled at start-up and log-on.
struct Session
{
    std::unique_ptr<SessionConnection> connection;
    QString profileName;          // the server type picked at start-up
    QString serverAddress;
    QString databaseName;
    QString windowTitle;
    bool connectOk = false;

    QString currentUserName;
    QString currentUserType;      // "ADMINISTRATOR" or "COMMON USER"

    // Letterhead of the current document title.
    QString companyName;
    QString companyAddress;
    QString companyPhone;
    QString companyEmail;
    QString companySaleTaxNo;
    QString companyNTN;
    QString currentTitle;

    QDate today;                  // the workstation's date when the main window loaded
    QDate workDate;
    QDate firstOpenDate;          // closing date plus one day
    int reportZoom = 100;

    // Result flags of the shared checks.
    bool dateValid = false;
    bool closingDateOk = false;
    bool partyFound = false;

    // Mode variables set by the menu for the screen it opens.
    QString voucherMode;
    QString invoiceMode;
    QString salaryMode;
    QString rightsUser;
    QDate periodFrom;
    QDate periodTo;
    QString currentStockItem;
    bool stockEntryValid = false;
    bool fillingPartyList = false;

    SessionConnection &db() { return *connection; }
    // The working day: the date the main window loaded, or the
    // workstation's date before that.
    QDate dateToday() const { return today.isValid() ? today : QDate::currentDate(); }
    // Line confirmations of the entry screens in the status bar instead
    // of a box (this user's preference).
    bool lineConfirmationsInStatusBar = false;
    bool isAdministrator() const { return currentUserType == QLatin1String("ADMINISTRATOR"); }
};

// The one session of this process.
Session &session();
