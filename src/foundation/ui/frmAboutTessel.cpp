#include "foundation/ui/frmAboutTessel.h"

#include "foundation/Schema.h"
#include "foundation/Session.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#ifndef TESSEL_VERSION
#define TESSEL_VERSION "1.0.0"
#endif

frmAboutTessel::frmAboutTessel(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAboutTessel"));
    setWindowTitle(QStringLiteral("ABOUT TESSEL"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);

    auto *name = new QLabel(QStringLiteral("Tessel Business Suite"), this);
    name->setObjectName(QStringLiteral("lblProduct"));
    name->setStyleSheet(QStringLiteral("font-size: 16pt; font-weight: bold; color: #017C6A;"));
    layout->addWidget(name);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    const Session &s = session();
    const QList<QPair<QString, QString>> rows = {
        {QStringLiteral("VERSION"), QStringLiteral(TESSEL_VERSION)},
        {QStringLiteral("SCHEMA"), QString::fromLatin1(Schema::kStamp)},
        {QStringLiteral("DATABASE"), s.databaseName},
        {QStringLiteral("SERVER"), s.serverAddress},
        {QStringLiteral("USER"), s.currentUserName},
        {QStringLiteral("USER TYPE"), s.currentUserType},
    };
    int r = 0;
    for (const auto &row : rows) {
        auto *k = new QLabel(row.first, this);
        k->setStyleSheet(QStringLiteral("color: #555;"));
        auto *v = new QLabel(row.second, this);
        v->setObjectName(QStringLiteral("lbl") + QString(row.first).remove(QLatin1Char(' ')));
        v->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(k, r, 0);
        grid->addWidget(v, r, 1);
        ++r;
    }
    layout->addLayout(grid);
    layout->addSpacing(10);

    cmdOk = new QPushButton(QStringLiteral("&OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdOk->setAutoDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    layout->addLayout(buttons);
    connect(cmdOk, &QPushButton::clicked, this, &QDialog::accept);
    cmdOk->setFocus();
}
