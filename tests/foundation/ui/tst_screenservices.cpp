#include "foundation/Session.h"
#include "foundation/ui/BaseScreen.h"
#include "foundation/ui/FieldStyle.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenServices.h"
#include "foundation/ui/frmMDITessel.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"

#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
#include <QMdiArea>
#include <QPushButton>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

// The shared routines as screens call them: messages, flags, focus.
class TestScreenServices : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { session() = Session(); }
    void validateDate_data();
    void validateDate();
    void closingDate_data() { TestDb::addBackends(); }
    void closingDate();
    void partyFields_data() { TestDb::addBackends(); }
    void partyFields();
    void lists_data() { TestDb::addBackends(); }
    void lists();
    void wordSearchAndPick_data() { TestDb::addBackends(); }
    void wordSearchAndPick();
    void failedStatementKeepsScreen();
    void screensOpenOnce();
};

namespace {
struct Form
{
    QWidget window;
    MaskedLineEdit *date = new MaskedLineEdit(MaskedLineEdit::dateMask());
    QLineEdit *other = new QLineEdit;
    Form()
    {
        auto *l = new QVBoxLayout(&window);
        l->addWidget(other);
        l->addWidget(date);
        window.show();
        QApplication::setActiveWindow(&window);
        other->setFocus();
    }
};

void openYear(const TestDb::Year &year)
{
    session().connection = year.connect();
}

struct SessionGuard
{
    ~SessionGuard() { session() = Session(); }
};
} // namespace

void TestScreenServices::validateDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QString>("message");
    QTest::newRow("good") << "28/02/2023" << true << "";
    QTest::newRow("missing") << "12/__/2024" << false << "Date is missing, please enter proper date";
    QTest::newRow("wrong") << "31/04/2024" << false << "Wrong date, please enter correct date";
}

void TestScreenServices::validateDate()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(QString, message);
    MessageRecorder rec;
    Form f;
    f.date->setMaskText(text);
    session().dateValid = !valid;
    QCOMPARE(ValidateDate(f.date), valid);
    QCOMPARE(session().dateValid, valid);
    if (valid) {
        QVERIFY(rec.isEmpty());
    } else {
        QCOMPARE(rec.texts(), QStringList{message});
        QVERIFY(rec.last().isCritical());
        QTRY_VERIFY(f.date->hasFocus());
    }
}

void TestScreenServices::closingDate()
{
    TESSEL_YEAR(year);
    SessionGuard guard;
    openYear(year);
    session().db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2024, 6, 30)});
    MessageRecorder rec;
    Form f;

    f.date->setDate(QDate(2024, 6, 30));
    QVERIFY(!CheckClosingDate(f.date));
    QVERIFY(!session().closingDateOk);
    QCOMPARE(rec.last().text, QStringLiteral("Sorry, you enter wrong date because data has closed at this date"));
    QTRY_VERIFY(f.date->hasFocus());

    f.date->setDate(QDate(2024, 7, 1));
    rec.clear();
    QVERIFY(CheckClosingDate(f.date));
    QVERIFY(session().closingDateOk);
    QVERIFY(rec.isEmpty());

    // A 29 February the calendar lacks is refused by the date check itself.
    f.date->setMaskText(QStringLiteral("29/02/2100"));
    QVERIFY(!ValidateDate(f.date));
    QCOMPARE(rec.last().text, QStringLiteral("Wrong date, please enter correct date"));

    // Without a closing date nothing can be entered; the focus stays where it is.
    session().db().execute(QStringLiteral("DELETE FROM tblClosingDate"));
    f.other->setFocus();
    QTRY_VERIFY(f.other->hasFocus());
    f.date->setDate(QDate(2030, 1, 1));
    rec.clear();
    QVERIFY(!CheckClosingDate(f.date));
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Closing date is missing, please specify closing date")});
    QVERIFY(f.other->hasFocus());
}

void TestScreenServices::partyFields()
{
    TESSEL_YEAR(year);
    SessionGuard guard;
    openYear(year);
    session().db().execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                           {QStringLiteral("17-10-001"), QStringLiteral("ALPHA PRESS")});
    MessageRecorder rec;
    QComboBox name;
    name.setEditable(true);
    MaskedLineEdit code(MaskedLineEdit::accountCodeMask());
    QLineEdit other;

    name.setEditText(QStringLiteral("ALPHA PRESS"));
    other.setText(QStringLiteral("KEEP"));
    CodeFromName(&name, &code, &other);
    QCOMPARE(code.maskText(), QStringLiteral("17-10-001"));
    QCOMPARE(other.text(), QStringLiteral("KEEP"));
    name.setEditText(QStringLiteral("NOBODY"));
    CodeFromName(&name, &code, &other);
    QCOMPARE(code.maskText(), QStringLiteral("__-__-___"));
    QCOMPARE(other.text(), QString());

    code.setMaskText(QStringLiteral("17-10-001"));
    NameFromCode(&code, &name);
    QCOMPARE(name.currentText(), QStringLiteral("ALPHA PRESS"));
    code.setMaskText(QStringLiteral("17-10-999"));
    NameFromCode(&code, &name);
    QCOMPARE(name.currentText(), QString());
    QVERIFY(rec.isEmpty());

    QVERIFY(!PartyNameExists(&name));
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Party name not found, please enter correct party name")});
    name.setEditText(QStringLiteral("ALPHA PRESS"));
    QVERIFY(PartyNameExists(&name));
    QVERIFY(session().partyFound);

    MaskedLineEdit date;
    date.setDate(QDate(2026, 3, 4));
    QLineEdit number;
    NextVoucherNo(&date, &number, QStringLiteral("JV"));
    QCOMPARE(number.text(), QStringLiteral("1"));
    QCOMPARE(session().workDate, QDate(2026, 3, 4));
}

void TestScreenServices::lists()
{
    TESSEL_YEAR(year);
    SessionGuard guard;
    openYear(year);
    SessionConnection &db = session().db();
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'BETA INKS')"));
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-002', 'ALPHA PRESS')"));
    db.execute(QStringLiteral("INSERT INTO tblCareOf (Name) VALUES ('ZAHID'), ('AMIR')"));

    QComboBox party, careOf, title;
    LoadPartyList(&party);
    QVERIFY(party.count() >= 2);
    QCOMPARE(party.currentText(), QString()); // filled, yet empty
    const int beta = party.findText(QStringLiteral("BETA INKS"));
    QVERIFY(beta > party.findText(QStringLiteral("ALPHA PRESS")));
    QCOMPARE(party.itemData(beta).toString(), QStringLiteral("17-10-001"));
    QVERIFY(party.isEditable());
    QCOMPARE(party.completer()->filterMode(), Qt::MatchContains);

    LoadCareOfList(&careOf);
    QCOMPARE(careOf.count(), 2);
    QCOMPARE(careOf.currentText(), QStringLiteral("AMIR")); // the first name stands in it

    LoadTitleList(&title); // no titles yet
    QCOMPARE(title.count(), 0);
    QCOMPARE(title.currentText(), QString());
    db.execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES ('PRESS')"));
    db.execute(QStringLiteral("INSERT INTO tblLetterhead (TitleName, CompanyName) VALUES ('PRESS', 'THE PRESS')"));
    LoadTitleList(&title);
    QCOMPARE(title.currentText(), QStringLiteral("PRESS"));
    QVERIFY(ApplyLetterhead(&title));
    QCOMPARE(session().companyName, QStringLiteral("THE PRESS"));
    QCOMPARE(session().currentTitle, QStringLiteral("PRESS"));
    title.setEditText(QStringLiteral("UNKNOWN"));
    QVERIFY(!ApplyLetterhead(&title));
    QCOMPARE(session().companyName, QStringLiteral("THE PRESS")); // left as it was
}

void TestScreenServices::wordSearchAndPick()
{
    TESSEL_YEAR(year);
    SessionGuard guard;
    openYear(year);
    session().db().execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES "
                                          "('17-10-001', 'ALPHA PRESS'), ('17-10-002', 'PRESS CLUB ALPHA'), "
                                          "('17-10-003', 'BETA PRESS')"));
    MessageRecorder rec;
    QWidget w;
    auto *layout = new QVBoxLayout(&w);
    auto *name = new QLineEdit;
    auto *code = new MaskedLineEdit(MaskedLineEdit::accountCodeMask());
    auto *grid = new QTableView;
    layout->addWidget(name);
    layout->addWidget(code);
    layout->addWidget(grid);
    grid->hide();
    w.show();
    QApplication::setActiveWindow(&w);

    name->setText(QStringLiteral("press alpha"));
    SearchPartyByWords(name, grid);
    QVERIFY(grid->isVisible());
    QTRY_VERIFY(grid->hasFocus());
    auto *model = qobject_cast<QueryTableModel *>(grid->model());
    QVERIFY(model);
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("A/C CODE"));
    QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("A/C NAME"));
    QCOMPARE(model->rowCount(), 2);
    grid->setCurrentIndex(model->index(1, 0));
    PickGridRowToCode(name, code, grid);
    QCOMPARE(name->text(), QStringLiteral("PRESS CLUB ALPHA"));
    QCOMPARE(code->maskText(), QStringLiteral("17-10-002"));
    QVERIFY(!grid->isVisible());

    QLineEdit plainCode;
    name->setText(QStringLiteral("BETA"));
    SearchPartyByWords(name, grid);
    PickGridRowToText(name, &plainCode, grid);
    QCOMPARE(plainCode.text(), QStringLiteral("17-10-003"));
    QVERIFY(rec.isEmpty());
}

void TestScreenServices::failedStatementKeepsScreen()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    SessionGuard guard;
    openYear(year);
    session().db().setStatementHook([](const QString &sql) {
        if (sql.contains(QLatin1String("tblPartyInfo")))
            throw DbError(QStringLiteral("disk I/O error"), sql);
    });
    MessageRecorder rec;
    QLineEdit name;
    name.setText(QStringLiteral("ANY"));
    QVERIFY(!PartyNameExists(&name));
    QVERIFY(!session().partyFound);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("disk I/O error")});

    // A menu handler that fails shows the reason; the window goes on.
    frmMDITessel main;
    MenuRouter router;
    router.on(QStringLiteral("mnuX"), [](MdiHost &) { throw DbError(QStringLiteral("no such table")); });
    rec.clear();
    QVERIFY(!router.trigger(QStringLiteral("mnuX"), main));
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("no such table")});
    QVERIFY(!router.trigger(QStringLiteral("mnuUnknown"), main));
}

class SampleScreen : public BaseScreen
{
    Q_OBJECT
public:
    explicit SampleScreen(QWidget *parent) : BaseScreen(parent)
    {
        setTitle(QStringLiteral("SAMPLE"));
        txtName = addLineEdit(QStringLiteral("txtName"), QStringLiteral("NAME"));
        addButton(QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
        addButton(QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
        addButton(QStringLiteral("cmdNew"), QStringLiteral("&NEW"));
    }
    void onOpened() override { ++opened; }
    QLineEdit *txtName;
    int opened = 0;
};

void TestScreenServices::screensOpenOnce()
{
    frmMDITessel main;
    main.show();
    auto *first = main.showScreen<SampleScreen>(QStringLiteral("frmSample"));
    QCOMPARE(first->opened, 1);
    first->showOnlyButtons({QStringLiteral("cmdDelete"), QStringLiteral("cmdNew")});
    QVERIFY(!first->findChild<QPushButton *>(QStringLiteral("cmdSave"))->isVisible());
    QVERIFY(first->findChild<QPushButton *>(QStringLiteral("cmdDelete"))->isVisible());
    // The next entry sets all its buttons again.
    first->showOnlyButtons({QStringLiteral("cmdSave"), QStringLiteral("cmdNew")});
    QVERIFY(first->findChild<QPushButton *>(QStringLiteral("cmdSave"))->isVisible());
    QVERIFY(!first->findChild<QPushButton *>(QStringLiteral("cmdDelete"))->isVisible());

    auto *again = main.showScreen<SampleScreen>(QStringLiteral("frmSample"));
    QCOMPARE(again, first);
    QCOMPARE(again->opened, 2);
    QCOMPARE(main.mdiArea()->subWindowList().size(), 1);
    QCOMPARE(main.mdiArea()->activeSubWindow()->widget(), first);
    QVERIFY(hasHighlight(first->txtName));
    QCOMPARE(first->findChild<QLabel *>(QStringLiteral("lblTitle"))->text(), QStringLiteral("SAMPLE"));

    // The close icon closes the screen; the next opening makes a new one.
    QTest::mouseClick(first->findChild<QToolButton *>(QStringLiteral("imgCancel")), Qt::LeftButton);
    QTRY_COMPARE(main.mdiArea()->subWindowList().size(), 0);
    auto *fresh = main.showScreen<SampleScreen>(QStringLiteral("frmSample"));
    QCOMPARE(fresh->opened, 1);
}

QTEST_MAIN(TestScreenServices)
#include "tst_screenservices.moc"
