// The backup and restore screens, headless, through the menu entries and
// the controls' names.
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "admin/YearBackup.h"
#include "admin/ui/frmBackup.h"
#include "admin/ui/frmRestore.h"
#include "foundation/ui/frmMDITessel.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using ScreenKit::click;
using TestDb::count;

namespace {

class Host : public MenuHost
{
public:
    Host() { registerAdminMenu(router); }
};

// Puts a dialogue in place of the file dialogue while it lives, recording
// what it was asked.
class FakeDialog
{
public:
    FakeDialog(frmBackup::FileDialog &slot, const QString &answer) : m_slot(slot), m_saved(slot)
    {
        slot = [this, answer](QWidget *, const QString &title, const QString &, const QString &filter) {
            asked << title << filter;
            return answer;
        };
    }
    ~FakeDialog() { m_slot = m_saved; }
    QStringList asked;

private:
    frmBackup::FileDialog &m_slot;
    frmBackup::FileDialog m_saved;
};

int accounts(SessionConnection &db) { return count(db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")); }

} // namespace

class TestFrmBackup : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void menuHasBothEntries();
    void backupThenRestore_data() { TestDb::addBackends(); }
    void backupThenRestore();
    void restoreAsksTwiceBeforeReplacing_data() { TestDb::addBackends(); }
    void restoreAsksTwiceBeforeReplacing();
    void restoreRefusesWhatIsNoBackup();
};

void TestFrmBackup::menuHasBothEntries()
{
    frmMDITessel main;
    QAction *backup = main.menuAction(QStringLiteral("mnuUBackUp"));
    QAction *restore = main.menuAction(QStringLiteral("mnuURestore"));
    QVERIFY(backup && restore);
    QCOMPARE(backup->text(), QStringLiteral("BACK UP"));
    QCOMPARE(restore->text(), QStringLiteral("RESTORE"));
    QVERIFY(backup->isEnabled());
    QVERIFY(restore->isEnabled());
}

void TestFrmBackup::backupThenRestore()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    t.addAccounts({{QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES")}});
    const QString year = t.year.name();
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("monday.bak"));
    Host host;
    ScreenKit::showActive(&host, host.size());

    auto *f = host.open<frmBackup>(QStringLiteral("mnuUBackUp"), QStringLiteral("frmBackup"));
    QVERIFY(f);
    QCOMPARE(f->txtDatabaseName->text(), year);

    // No file: the backup is called off in the old words, and so is a
    // dialogue closed without a name.
    click(f->cmdBackup);
    QCOMPARE(t.rec.last().text, YearBackup::cancelledMessage());
    QVERIFY(t.rec.last().isCritical());
    {
        FakeDialog none(frmBackup::saveDialog(), QString());
        click(f->cmdBrowse);
        QCOMPARE(none.asked, (QStringList{YearBackup::dialogTitle(year), YearBackup::fileFilter(year)}));
        QCOMPARE(t.rec.last().text, YearBackup::cancelledMessage());
        QCOMPARE(none.asked.first(), year + QStringLiteral(" (BACKUP) *AVOID SPACE IN BACKUP NAME"));
    }
    {
        FakeDialog chosen(frmBackup::saveDialog(), file);
        click(f->cmdBrowse);
    }
    QCOMPARE(f->txtFileName->text(), QDir::toNativeSeparators(file));
    t.rec.clear();
    click(f->cmdBackup);
    QCOMPARE(t.rec.texts(), QStringList{YearBackup::completedMessage()});
    QCOMPARE(f->prgBackup->value(), 100);
    QVERIFY(f->txtFileName->text().isEmpty());
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("backup"));
    QCOMPARE(YearBackup::fileKind(file),
             t.year.profile().isEmbedded() ? YearBackup::FileKind::Embedded : YearBackup::FileKind::Server);

    // The same file again: only after a question; No leaves it.
    const QDateTime written = QFileInfo(file).lastModified();
    f->txtFileName->setText(file);
    t.rec.clear();
    click(f->cmdBackup);
    QCOMPARE(t.rec.count(), 1);
    QVERIFY(t.rec.last().isQuestion());
    QCOMPARE(QFileInfo(file).lastModified(), written);

    // Restore into a new year: after the question, with the same books.
    const QString restored = TestDb::uniqueName();
    auto *r = host.open<frmRestore>(QStringLiteral("mnuURestore"), QStringLiteral("frmRestore"));
    QVERIFY(r);
    r->txtFileName->setText(file);
    r->txtYearName->setText(restored);
    t.rec.clear();
    click(r->cmdRestore); // answered No
    QCOMPARE(t.rec.texts(), QStringList{YearBackup::restoreQuestion(file, restored)});
    QVERIFY(!YearBackup::yearExists(t.year.profile(), restored));

    t.rec.clear();
    t.rec.answerNext(true);
    click(r->cmdRestore);
    QCOMPARE(t.rec.texts(),
             (QStringList{YearBackup::restoreQuestion(file, restored), YearBackup::restoredMessage(restored)}));
    QCOMPARE(r->prgRestore->value(), 100);
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("restore"));
    auto copy = SessionConnection::open(t.year.profile(), restored);
    QCOMPARE(accounts(*copy), accounts(t.db()));
    copy.reset();
    AccountYear::drop(t.year.profile(), restored);
}

void TestFrmBackup::restoreAsksTwiceBeforeReplacing()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    TestDb::Year other(backend);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("other.bak"));
    YearBackup::backupYear(other.profile(), other.name(), file);
    other.connect()->execute(
        QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'AFTER THE BACKUP')"));
    const int before = accounts(*other.connect());
    Host host;
    ScreenKit::showActive(&host, host.size());
    auto *r = host.open<frmRestore>(QStringLiteral("mnuURestore"), QStringLiteral("frmRestore"));
    QVERIFY(r);
    r->txtFileName->setText(file);

    // Over the year this workstation works in: refused, whatever is answered.
    r->txtYearName->setText(t.year.name());
    t.rec.setDefaultAnswer(true);
    click(r->cmdRestore);
    QVERIFY(t.rec.last().isCritical());
    QTRY_VERIFY(r->txtYearName->hasFocus());

    // Yes, then No to replacing: the year stays as it is.
    t.rec.setDefaultAnswer(false);
    r->txtYearName->setText(other.name());
    t.rec.clear();
    t.rec.answerNext(true);
    click(r->cmdRestore);
    QCOMPARE(t.rec.texts(), (QStringList{YearBackup::restoreQuestion(file, other.name()),
                                         YearBackup::replaceQuestion(other.name())}));
    QCOMPARE(accounts(*other.connect()), before);

    // Yes to both: the year is what the backup holds.
    t.rec.clear();
    t.rec.answerNext(true);
    t.rec.answerNext(true);
    click(r->cmdRestore);
    QCOMPARE(t.rec.last().text, YearBackup::restoredMessage(other.name()));
    QCOMPARE(accounts(*other.connect()), before - 1);
}

void TestFrmBackup::restoreRefusesWhatIsNoBackup()
{
    ScreenTest t(QStringLiteral("sqlite"));
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("letter.bak"));
    QFile text(file);
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("Dear sir, your order is ready.\n");
    text.close();
    Host host;
    ScreenKit::showActive(&host, host.size());
    auto *r = host.open<frmRestore>(QStringLiteral("mnuURestore"), QStringLiteral("frmRestore"));
    QVERIFY(r);

    click(r->cmdRestore);
    QCOMPARE(t.rec.last().text, QStringLiteral("Choose the backup file to restore."));
    QTRY_VERIFY(r->txtFileName->hasFocus());

    r->txtFileName->setText(file);
    r->txtYearName->setText(QStringLiteral("Press 2026"));
    t.rec.clear();
    click(r->cmdRestore);
    QCOMPARE(t.rec.count(), 1);
    QVERIFY(t.rec.last().text.startsWith(QStringLiteral("\"Press 2026\" is not an account-year name")));
    QTRY_VERIFY(r->txtYearName->hasFocus());

    const QString year = TestDb::uniqueName();
    r->txtYearName->setText(year);
    t.rec.clear();
    t.rec.answerNext(true);
    click(r->cmdRestore);
    QCOMPARE(t.rec.last().text,
             QStringLiteral("The file %1 is not a backup of an account year.").arg(QDir::toNativeSeparators(file)));
    QVERIFY(r->isEnabled() && r->buttonFrame()->isEnabled());
    QVERIFY(!YearBackup::yearExists(t.year.profile(), year));
}

QTEST_MAIN(TestFrmBackup)
#include "tst_frmbackup.moc"
