#include "foundation/ConnectionProfile.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/StartupFlow.h"
#include "foundation/ui/frmMDITessel.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFont>
#include <QStyleFactory>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessel"));
    QApplication::setOrganizationName(QStringLiteral("Tessel"));
    QApplication::setApplicationVersion(QStringLiteral(TESSEL_VERSION));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setWindowIcon(tesselIcon());
    MessageService::setCaption(QStringLiteral("Tessel Business Suite"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Tessel Business Suite"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption profileOption(QStringLiteral("profile"),
        QStringLiteral("Connection profile of the settings file to preselect."), QStringLiteral("NAME"));
    const QCommandLineOption yearOption(QStringLiteral("year"),
        QStringLiteral("Account year to preselect."), QStringLiteral("NAME"));
    const QCommandLineOption configOption(QStringLiteral("config"),
        QStringLiteral("Settings file (default: TESSEL_CONFIG or the user's config folder)."), QStringLiteral("FILE"));
    parser.addOption(profileOption);
    parser.addOption(yearOption);
    parser.addOption(configOption);
    parser.process(app);

    const AppSettings settings = AppSettings::load(
        parser.isSet(configOption) ? parser.value(configOption) : AppSettings::defaultPath());
    if (!settings.error.isEmpty()) {
        MessageService::critical(nullptr, settings.error);
        return 1;
    }

    StartupFlow flow(settings);
    QObject::connect(&flow, &StartupFlow::finished, &app, [](int code) { QApplication::exit(code); },
                     Qt::QueuedConnection);
    app.setQuitOnLastWindowClosed(false);
    flow.start(parser.value(profileOption), parser.value(yearOption));
    return app.exec();
}
