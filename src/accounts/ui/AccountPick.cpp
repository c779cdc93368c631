#include "accounts/ui/AccountPick.h"

#include "foundation/Lookups.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenServices.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCoreApplication>
#include <QCompleter>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>

namespace {
// A message box or a list popping up takes the focus for a moment without
// the user leaving the field.
bool isUsersMove(Qt::FocusReason reason)
{
    return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
}
} // namespace

AccountPick::AccountPick(QComboBox *nameCombo, MaskedLineEdit *codeField, QTableView *searchGrid, QObject *parent)
    : QObject(parent), m_name(nameCombo), m_code(codeField), m_grid(searchGrid)
{
    Q_ASSERT(nameCombo && codeField);
    if (!m_code->mask().isEmpty() && m_code->mask() != MaskedLineEdit::accountCodeMask())
        m_code->setMask(MaskedLineEdit::accountCodeMask());
    m_name->setEditable(true);
    m_name->setInsertPolicy(QComboBox::NoInsert);
    SafeTextKey::attach(m_name);
    EnterToTab::attach(m_name);
    EnterToTab::attach(m_code);

    connect(m_name, &QComboBox::currentTextChanged, this, [this] { nameChanged(); });
    connect(m_code, &QLineEdit::textChanged, this, [this] { codeChanged(false); });
    m_name->installEventFilter(this);
    if (m_name->lineEdit())
        m_name->lineEdit()->installEventFilter(this);
    m_code->installEventFilter(this);
    if (m_grid) {
        m_grid->installEventFilter(this);
        connect(m_grid, &QTableView::clicked, this, [this] { pickFromSearch(); });
    }
}

QTableView *AccountPick::searchGrid()
{
    if (!m_grid) {
        QWidget *host = m_name->window();
        m_grid = new QTableView(host);
        m_grid->setObjectName(QStringLiteral("dgSearch"));
        m_grid->setModel(new QueryTableModel(m_grid));
        m_grid->setVisible(false);
        m_grid->installEventFilter(this);
        connect(m_grid, &QTableView::clicked, this, [this] { pickFromSearch(); });
        m_ownGrid = true;
    }
    return m_grid;
}

void AccountPick::loadPartyList()
{
    m_syncing = true;
    LoadPartyList(m_name);
    m_syncing = false;
    watchNameKeys();
}

void AccountPick::reload()
{
    const bool onAccount = hasAccount();
    const QString name = m_name->currentText();
    const QString code = m_code->maskText();
    loadPartyList();
    m_syncing = true;
    // An account keeps its code and shows its name as it stands now (it
    // may have been renamed meanwhile); anything else stays as typed.
    int at = -1;
    for (int i = 0; onAccount && at < 0 && i < m_name->count(); ++i) {
        if (m_name->itemData(i).toString().trimmed() == code.trimmed())
            at = i;
    }
    if (at >= 0) {
        m_name->setCurrentIndex(at);
    } else {
        m_name->setCurrentIndex(name.isEmpty() ? -1 : m_name->findText(name, Qt::MatchFixedString));
        m_name->setEditText(name);
    }
    m_code->setMaskText(code);
    m_syncing = false;
}

void AccountPick::setAccounts(const QueryResult &rows)
{
    QStringList names, codes;
    for (const Row &r : rows) {
        names << r.text(0).trimmed();
        codes << r.text(1).trimmed();
    }
    m_syncing = true;
    makeSearchable(m_name);
    fillCombo(m_name, names, codes);
    m_name->setCurrentIndex(-1);
    m_name->setEditText(QString());
    m_syncing = false;
    watchNameKeys();
}

// Escape must reach the pick even while the completion list is open: the
// list would otherwise take the first Escape to close itself.
void AccountPick::watchNameKeys()
{
    if (m_name->lineEdit())
        m_name->lineEdit()->installEventFilter(this);
    if (m_name->completer() && m_name->completer()->popup()) {
        m_popup = m_name->completer()->popup();
        m_popup->installEventFilter(this);
    }
}

QString AccountPick::code() const { return m_lastCode; }

QString AccountPick::name() const { return m_name ? m_name->currentText() : QString(); }

void AccountPick::setCode(const QString &code)
{
    m_syncing = true;
    m_code->setMaskText(code);
    m_syncing = false;
    codeChanged(true);
}

void AccountPick::clear()
{
    m_syncing = true;
    m_name->setCurrentIndex(-1);
    m_name->setEditText(QString());
    m_code->clearMask();
    m_syncing = false;
    m_lastCode.clear();
    announce();
}

void AccountPick::nameChanged()
{
    if (m_syncing)
        return;
    const QString name = m_name->currentText();
    std::optional<QString> code;
    if (!runSafely(m_name, [&] { code = Lookups::codeFromName(session().db(), name); }))
        return;
    m_syncing = true;
    if (code)
        m_code->setMaskText(code->trimmed());
    else
        m_code->clearMask();
    m_syncing = false;
    m_lastCode = code ? code->trimmed() : QString();
    announce();
}

bool AccountPick::takeFirstMatch()
{
    QCompleter *completer = m_name->completer();
    const QString typed = m_name->currentText();
    if (!completer || typed.isEmpty() || !m_lastCode.isEmpty())
        return false;
    completer->setCompletionPrefix(typed);
    if (completer->completionCount() == 0)
        return false;
    completer->setCurrentRow(0);
    const QString first = completer->currentCompletion();
    if (completer->popup())
        completer->popup()->hide();
    setFieldText(m_name, first);
    return true;
}

void AccountPick::nameLeft()
{
    // Leaving the name settles the code just as typing does.
    nameChanged();
}

void AccountPick::codeChanged(bool leaving)
{
    if (m_syncing)
        return;
    const QString code = m_code->maskText();
    std::optional<QString> name;
    if (m_code->isComplete()) {
        if (!runSafely(m_code, [&] { name = Lookups::nameFromCode(session().db(), code); }))
            return;
    }
    m_syncing = true;
    if (name)
        setFieldText(m_name, name->trimmed());
    else if (leaving)
        setFieldText(m_name, QString());
    m_syncing = false;
    m_lastCode = name ? code : QString();
    announce();
}

void AccountPick::announce()
{
    const QString n = name();
    if (m_announced && n == m_lastName && m_lastCode == m_shownCode)
        return;
    m_announced = true;
    m_lastName = n;
    m_shownCode = m_lastCode;
    Q_EMIT accountChanged(m_lastCode, n);
}

void AccountPick::openSearch()
{
    QTableView *grid = searchGrid();
    if (m_ownGrid) {
        QWidget *host = grid->parentWidget();
        const QPoint at = m_name->mapTo(host, QPoint(0, m_name->height() + 2));
        const int width = qMax(360, qMin(host->width() - 16, 2000 / 15 + 10900 / 15 + 24));
        const int height = qMax(160, qMin(host->height() - at.y() - 8, 280));
        // Under the name field, moved left as far as needed to stay inside the screen.
        const int x = qMax(8, qMin(at.x(), host->width() - width - 8));
        grid->setGeometry(x, at.y(), width, height);
    }
    SearchPartyByWords(m_name, grid);
}

void AccountPick::pickFromSearch()
{
    if (!m_grid || !m_grid->isVisible())
        return;
    PickGridRowToCode(m_name, m_code, m_grid);
    // The fields have moved already through their change handlers.
    m_code->setFocus(Qt::OtherFocusReason);
    Q_EMIT picked(m_lastCode, name());
}

bool AccountPick::eventFilter(QObject *watched, QEvent *event)
{
    const bool onName = watched == m_name || (m_name && watched == m_name->lineEdit());
    // Compared by the pointer kept when the list was watched: asking the
    // combo for its completer here could reach a combo being destroyed.
    // The completion list closing when the text stops matching leaves the
    // text selected, and the next key would wipe it: that key types on at
    // the end instead.
    if (event->type() == QEvent::Hide && m_popup && watched == m_popup.data())
        m_keepTyped = true;
    if (onName && event->type() == QEvent::FocusIn)
        m_keepTyped = false;
    if (onName && event->type() == QEvent::KeyPress && m_keepTyped && m_name->lineEdit()) {
        m_keepTyped = false;
        QLineEdit *edit = m_name->lineEdit();
        const auto *key = static_cast<QKeyEvent *>(event);
        if (!key->text().isEmpty() && key->text().at(0).isPrint() && edit->hasSelectedText()
            && edit->selectedText() == edit->text())
            edit->setCursorPosition(edit->text().size());
    }
    if (event->type() == QEvent::KeyPress && m_popup && watched == m_popup.data()) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Escape && key->modifiers() == Qt::NoModifier) {
            m_popup->hide();
            openSearch();
            return true;
        }
        // Enter on the list with no row chosen takes its first row, and
        // then moves on as Enter in the field does.
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && !m_popup->currentIndex().isValid()) {
            m_popup->hide();
            takeFirstMatch();
            QKeyEvent again(QEvent::KeyPress, key->key(), key->modifiers());
            QCoreApplication::sendEvent(m_name, &again);
            return true;
        }
    }
    if (onName && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Escape && key->modifiers() == Qt::NoModifier) {
            openSearch();
            return true;
        }
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)
            takeFirstMatch(); // and Enter goes on to the next field
    } else if (onName && event->type() == QEvent::FocusOut) {
        const auto *focus = static_cast<QFocusEvent *>(event);
        QWidget *now = QApplication::focusWidget();
        if (isUsersMove(focus->reason()) && now != m_name && (!m_name || now != m_name->lineEdit()))
            nameLeft();
    } else if (watched == m_code && event->type() == QEvent::FocusOut) {
        if (isUsersMove(static_cast<QFocusEvent *>(event)->reason()))
            codeChanged(true);
    } else if (watched == m_grid && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            pickFromSearch();
            return true;
        }
        if (key->key() == Qt::Key_Escape) {
            m_grid->setVisible(false);
            m_name->setFocus(Qt::OtherFocusReason);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
