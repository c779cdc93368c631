#include "foundation/ui/ScreenServices.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"

#include <QComboBox>
#include <QCompleter>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>

bool askCloseQuestion(QWidget *screen, bool linesTyped, const QString &question)
{
    return !linesTyped || MessageService::askYesNoCritical(screen, question);
}

bool runSafely(QWidget *parent, const std::function<void()> &work)
{
    try {
        work();
        return true;
    } catch (const DbError &e) {
        MessageService::critical(parent, e.driverText());
    } catch (const std::exception &e) {
        MessageService::critical(parent, QString::fromLocal8Bit(e.what()));
    }
    return false;
}

QString fieldText(const QWidget *field)
{
    if (auto *m = qobject_cast<const MaskedLineEdit *>(field))
        return m->maskText();
    if (auto *e = qobject_cast<const QLineEdit *>(field))
        return e->text();
    if (auto *c = qobject_cast<const QComboBox *>(field))
        return c->currentText();
    return QString();
}

void setFieldText(QWidget *field, const QString &text)
{
    if (auto *m = qobject_cast<MaskedLineEdit *>(field))
        m->setMaskText(text);
    else if (auto *e = qobject_cast<QLineEdit *>(field))
        e->setText(text);
    else if (auto *c = qobject_cast<QComboBox *>(field)) {
        if (c->isEditable())
            c->setEditText(text);
        else
            c->setCurrentIndex(c->findText(text));
    }
}

static void refuse(QWidget *field, const QString &message, bool moveFocus = true)
{
    MessageService::critical(field, message);
    if (moveFocus && field)
        field->setFocus(Qt::OtherFocusReason);
}

void DateToMaskText(const QDate &date, MaskedLineEdit *field)
{
    if (field)
        field->setDate(date);
}

bool ValidateDate(MaskedLineEdit *field)
{
    session().dateValid = false;
    const DateRules::Check c = DateRules::checkDate(field->maskText());
    if (c != DateRules::Check::Ok) {
        refuse(field, DateRules::messageFor(c));
        return false;
    }
    session().dateValid = true;
    return true;
}

bool ValidateYear(MaskedLineEdit *field)
{
    session().dateValid = false;
    const DateRules::Check c = DateRules::checkYear(field->maskText());
    if (c != DateRules::Check::Ok) {
        refuse(field, DateRules::messageFor(c, true));
        return false;
    }
    session().dateValid = true;
    return true;
}

bool CheckClosingDate(MaskedLineEdit *field)
{
    session().closingDateOk = false;
    std::optional<QDate> closing;
    if (!runSafely(field, [&] { closing = Lookups::closingDate(session().db()); }))
        return false;
    // A closing date set on another workstation is followed from here on.
    if (closing)
        session().firstOpenDate = closing->addDays(1);
    const DateRules::Closing c = DateRules::checkClosing(field->date(), closing);
    switch (c) {
    case DateRules::Closing::Open:
        session().closingDateOk = true;
        return true;
    case DateRules::Closing::NoClosingDate:
        refuse(field, DateRules::messageFor(c), false);
        return false;
    default:
        refuse(field, DateRules::messageFor(c));
        return false;
    }
}

void CodeFromName(QWidget *nameField, MaskedLineEdit *codeField, QWidget *otherField)
{
    runSafely(nameField, [&] {
        const auto code = Lookups::codeFromName(session().db(), fieldText(nameField));
        if (!code) {
            codeField->setMaskText(codeField->mask());
            if (otherField)
                setFieldText(otherField, QString());
        } else {
            codeField->setMaskText(*code);
        }
    });
}

void NameFromCode(MaskedLineEdit *codeField, QWidget *nameField)
{
    runSafely(codeField, [&] {
        const auto name = Lookups::nameFromCode(session().db(), codeField->maskText());
        setFieldText(nameField, name.value_or(QString()));
    });
}

bool PartyNameExists(QWidget *nameField)
{
    session().partyFound = false;
    bool found = false;
    if (!runSafely(nameField, [&] { found = Lookups::partyNameExists(session().db(), fieldText(nameField)); }))
        return false;
    if (!found) {
        refuse(nameField, Lookups::partyNotFoundMessage());
        return false;
    }
    session().partyFound = true;
    return true;
}

void NextVoucherNo(MaskedLineEdit *dateField, QWidget *numberField, const QString &voucherType)
{
    const QDate d = dateField ? dateField->date() : QDate();
    if (d.isValid())
        session().workDate = d;
    runSafely(numberField, [&] {
        setFieldText(numberField, QString::number(Lookups::nextVoucherNo(session().db(), voucherType)));
    });
}

void makeSearchable(QComboBox *combo)
{
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    auto *completer = new QCompleter(combo->model(), combo);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    combo->setCompleter(completer);
}

void fillCombo(QComboBox *combo, const QStringList &texts, const QStringList &data)
{
    const QSignalBlocker block(combo);
    combo->clear();
    for (int i = 0; i < texts.size(); ++i)
        combo->addItem(texts.at(i), i < data.size() ? QVariant(data.at(i)) : QVariant());
}

void LoadPartyList(QComboBox *combo)
{
    runSafely(combo, [&] {
        const QueryResult rows = Lookups::partyList(session().db());
        QStringList names, codes;
        for (const Row &r : rows) {
            names << r.text(0);
            codes << r.text(1);
        }
        if (!combo->isEditable() || !combo->completer() || combo->completer()->filterMode() != Qt::MatchContains)
            makeSearchable(combo);
        fillCombo(combo, names, codes);
        combo->setCurrentIndex(-1);
        combo->setEditText(QString());
    });
}

static void loadFirstSelected(QComboBox *combo, const QStringList &items)
{
    if (!combo->isEditable() || !combo->completer() || combo->completer()->filterMode() != Qt::MatchContains)
        makeSearchable(combo);
    fillCombo(combo, items);
    if (!items.isEmpty())
        combo->setCurrentIndex(0);
    else
        combo->setEditText(QString());
}

void LoadCareOfList(QComboBox *combo)
{
    runSafely(combo, [&] { loadFirstSelected(combo, Lookups::careOfList(session().db())); });
}

void LoadTitleList(QComboBox *combo)
{
    runSafely(combo, [&] { loadFirstSelected(combo, Lookups::titleList(session().db())); });
}

static QueryTableModel *gridModel(QTableView *grid)
{
    auto *model = qobject_cast<QueryTableModel *>(grid->model());
    if (!model) {
        model = new QueryTableModel(grid);
        grid->setModel(model);
    }
    return model;
}

void SearchPartyByWords(QWidget *textField, QTableView *grid)
{
    runSafely(textField, [&] {
        const QueryResult rows = Lookups::searchPartyByWords(session().db(), fieldText(textField));
        QueryTableModel *model = gridModel(grid);
        model->setResult(rows, {QStringLiteral("A/C CODE"), QStringLiteral("A/C NAME")});
        grid->setSelectionBehavior(QAbstractItemView::SelectRows);
        grid->setSelectionMode(QAbstractItemView::SingleSelection);
        grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
        grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        grid->setColumnWidth(0, 2000 / 15);
        grid->setColumnWidth(1, 10900 / 15);
        if (model->rowCount() > 0)
            grid->setCurrentIndex(model->index(0, 0));
        grid->setVisible(true);
        grid->raise();
        grid->setFocus(Qt::OtherFocusReason);
    });
}

static bool currentRow(QTableView *grid, QString &code, QString &name)
{
    auto *model = qobject_cast<QueryTableModel *>(grid->model());
    if (!model)
        return false;
    const int row = grid->currentIndex().row();
    if (row < 0 || row >= model->rowCount())
        return false;
    code = model->rawValue(row, model->columnOf(QStringLiteral("A/C CODE"))).toString();
    name = model->rawValue(row, model->columnOf(QStringLiteral("A/C NAME"))).toString();
    return true;
}

void PickGridRowToCode(QWidget *nameField, MaskedLineEdit *codeField, QTableView *grid)
{
    QString code, name;
    if (currentRow(grid, code, name)) {
        setFieldText(nameField, name);
        codeField->setMaskText(code);
    }
    grid->setVisible(false);
}

void PickGridRowToText(QWidget *nameField, QWidget *codeField, QTableView *grid)
{
    QString code, name;
    if (currentRow(grid, code, name)) {
        setFieldText(nameField, name);
        setFieldText(codeField, code);
    }
    grid->setVisible(false);
}

bool ApplyLetterhead(QComboBox *titleCombo)
{
    bool applied = false;
    runSafely(titleCombo, [&] {
        const auto l = Lookups::letterhead(session().db(), titleCombo->currentText());
        if (l) {
            Lookups::applyLetterhead(session(), *l);
            applied = true;
        }
    });
    return applied;
}
