#include "foundation/ui/MessageService.h"

#include "foundation/Session.h"

#include <QMainWindow>
#include <QStatusBar>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {
MessageService::Interceptor *g_interceptor = nullptr;
QString g_caption = QStringLiteral("Tessel");
} // namespace

void MessageService::critical(QWidget *parent, const QString &text) { show(parent, Kind::Critical, text); }
void MessageService::information(QWidget *parent, const QString &text) { show(parent, Kind::Information, text); }
void MessageService::confirmLine(QWidget *parent, const QString &text)
{
    if (session().lineConfirmationsInStatusBar && parent) {
        for (QWidget *w = parent; w; w = w->parentWidget()) {
            if (auto *main = qobject_cast<QMainWindow *>(w)) {
                main->statusBar()->showMessage(text, 4000);
                return;
            }
        }
    }
    information(parent, text);
}

bool MessageService::askYesNo(QWidget *parent, const QString &text) { return show(parent, Kind::Question, text); }
bool MessageService::askYesNoCritical(QWidget *parent, const QString &text) { return show(parent, Kind::CriticalQuestion, text); }

QString MessageService::caption() { return g_caption; }
void MessageService::setCaption(const QString &caption) { g_caption = caption; }
void MessageService::setInterceptor(Interceptor *interceptor) { g_interceptor = interceptor; }
MessageService::Interceptor *MessageService::interceptor() { return g_interceptor; }

bool MessageService::show(QWidget *parent, Kind kind, const QString &text)
{
    if (g_interceptor)
        return g_interceptor->intercept(kind, text);

    if (!parent)
        parent = QApplication::activeWindow();
    QMessageBox box(parent);
    box.setWindowTitle(g_caption);
    box.setText(text);
    switch (kind) {
    case Kind::Critical:
        box.setIcon(QMessageBox::Critical);
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case Kind::Information:
        box.setIcon(QMessageBox::Information);
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case Kind::Question:
    case Kind::CriticalQuestion:
        box.setIcon(kind == Kind::Question ? QMessageBox::Question : QMessageBox::Critical);
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
        box.setEscapeButton(QMessageBox::No);
        break;
    }
    // When the box closes, the window gives the focus back to its field
    // itself (as ActiveWindowFocusReason): checks that run when a button
    // gets the focus tell that apart from the user moving onto it.
    return box.exec() == QMessageBox::Yes;
}
