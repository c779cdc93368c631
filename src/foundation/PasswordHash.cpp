#include "foundation/PasswordHash.h"

#include <QCryptographicHash>
#include <QPasswordDigestor>
#include <QRandomGenerator>
#include <QStringList>

namespace PasswordHash {

namespace {
constexpr int kKeyLength = 32;
int g_iterations = kIterations;

int storedIterations(const QString &stored)
{
    const QStringList parts = stored.split(QLatin1Char('$'));
    if (parts.size() != 4 || parts.at(0) != QLatin1String("pbkdf2-sha256"))
        return 0;
    bool ok = false;
    const int n = parts.at(1).toInt(&ok);
    return ok ? n : 0;
}

QByteArray derive(const QString &password, const QByteArray &salt, int iterations)
{
    return QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, password.toUtf8(), salt,
                                              iterations, kKeyLength);
}

bool constantTimeEquals(const QByteArray &a, const QByteArray &b)
{
    if (a.size() != b.size())
        return false;
    unsigned char diff = 0;
    for (int i = 0; i < a.size(); ++i)
        diff |= static_cast<unsigned char>(a.at(i) ^ b.at(i));
    return diff == 0;
}
} // namespace

QString hash(const QString &password)
{
    QByteArray salt(16, Qt::Uninitialized);
    QRandomGenerator::system()->generate(salt.begin(), salt.end());
    const QByteArray key = derive(password, salt, g_iterations);
    return QStringLiteral("pbkdf2-sha256$%1$%2$%3")
        .arg(g_iterations)
        .arg(QString::fromLatin1(salt.toBase64()), QString::fromLatin1(key.toBase64()));
}

bool verify(const QString &password, const QString &stored)
{
    const QStringList parts = stored.split(QLatin1Char('$'));
    if (parts.size() != 4 || parts.at(0) != QLatin1String("pbkdf2-sha256")) {
        burnVerifyTime(password);
        return false;
    }
    bool ok = false;
    const int iterations = parts.at(1).toInt(&ok);
    if (!ok || iterations < 1 || iterations > 10000000) {
        burnVerifyTime(password);
        return false;
    }
    const QByteArray salt = QByteArray::fromBase64(parts.at(2).toLatin1());
    const QByteArray expected = QByteArray::fromBase64(parts.at(3).toLatin1());
    return constantTimeEquals(derive(password, salt, iterations), expected);
}

bool needsUpgrade(const QString &stored)
{
    return storedIterations(stored) < g_iterations;
}

void burnVerifyTime(const QString &password)
{
    static const QByteArray dummySalt("tessel-no-such-user");
    (void)derive(password, dummySalt, g_iterations);
}

void setIterationsForTests(int iterations)
{
    g_iterations = qMax(1, iterations);
}

} // namespace PasswordHash
