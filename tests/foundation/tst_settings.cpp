#include "foundation/ConnectionProfile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

// The settings file as the README shows it.
class TestSettings : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void readmeExample();
    void noFileOffersTheEmbeddedStoreAlone();
    void dataDirFromEnvironmentWins();
    void lineConfirmationsPerUser();
};

void TestSettings::readmeExample()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tessel.ini"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("; Server profiles offered at start-up\n"
            "profiles=LOCAL, ONLINE\n"
            "designDir=/srv/tessel-designs\n"
            "[LOCAL]\n"
            "type=postgres\n"
            "host=accounts-server      ; a host name\n"
            "port=5432\n"
            "user=tessel\n"
            "askPassword=true\n"
            "sslmode=prefer            ; disable, prefer\n"
            "[ONLINE]\n"
            "type=postgres\n"
            "host=books.example.org\n"
            "port=6543\n"
            "user=tessel\n"
            "password=\"p;w x\"\n"
            "sslmode=verify-full\n");
    f.close();
    // It holds a password: readable by its owner alone, or it is refused.
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    qunsetenv("TESSEL_DATA_DIR");
    const AppSettings s = AppSettings::load(path);
    QVERIFY2(s.error.isEmpty(), qPrintable(s.error));
    QCOMPARE(s.profiles.size(), 3);
    QVERIFY(s.profiles.at(0).isEmbedded());
    QCOMPARE(s.profiles.at(1).name, QStringLiteral("LOCAL"));
    QCOMPARE(s.profiles.at(1).host, QStringLiteral("accounts-server"));
    QCOMPARE(s.profiles.at(1).sslMode, QStringLiteral("prefer"));
    QVERIFY(s.profiles.at(1).askPassword);
    QVERIFY(s.profiles.at(1).password.isEmpty());
    QCOMPARE(s.profiles.at(2).port, 6543);
    // A password with a semicolon or blank is written in double quotes.
    QCOMPARE(s.profiles.at(2).password, QStringLiteral("p;w x"));
    QCOMPARE(s.designDir, QStringLiteral("/srv/tessel-designs"));
    QVERIFY(s.profile(QStringLiteral("online")) != nullptr);
    QVERIFY(s.profile(QStringLiteral("OFFLINE")) == nullptr);
}

void TestSettings::noFileOffersTheEmbeddedStoreAlone()
{
    const AppSettings s = AppSettings::load(QStringLiteral("/nonexistent/tessel.ini"));
    QCOMPARE(s.profiles.size(), 1);
    QVERIFY(s.profiles.first().isEmbedded());
    QVERIFY(!s.profiles.first().dataDir.isEmpty());
}

void TestSettings::dataDirFromEnvironmentWins()
{
    qputenv("TESSEL_DATA_DIR", "/tmp/somewhere-else");
    QCOMPARE(AppSettings::load(QString()).profiles.first().dataDir, QStringLiteral("/tmp/somewhere-else"));
    qunsetenv("TESSEL_DATA_DIR");
}

void TestSettings::lineConfirmationsPerUser()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tessel.ini"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("[user.CLERK]\nlineConfirmations=statusbar\n[user.ADMIN]\nlineConfirmations=box\n");
    f.close();
    QVERIFY(AppSettings::lineConfirmationsInStatusBar(QStringLiteral("CLERK"), path));
    QVERIFY(!AppSettings::lineConfirmationsInStatusBar(QStringLiteral("ADMIN"), path));
    QVERIFY(!AppSettings::lineConfirmationsInStatusBar(QStringLiteral("OTHER"), path));
    QVERIFY(!AppSettings::lineConfirmationsInStatusBar(QStringLiteral("CLERK"), dir.filePath(QStringLiteral("none.ini"))));
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
