#pragma once

#include "foundation/SessionConnection.h"

#include <QAbstractTableModel>
#include <QStringList>

// Rows read from the database, shown in a grid under given captions.
// Dates show as dd/mm/yyyy; numbers stand to the right.
class QueryTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit QueryTableModel(QObject *parent = nullptr);

    // Captions name the columns in order; missing ones keep the column's name.
    void setResult(const QueryResult &result, const QStringList &captions = {});
    const QueryResult &result() const { return m_result; }
    QStringList captions() const { return m_captions; }
    // The column with this caption (or column name), -1 when none.
    int columnOf(const QString &captionOrName) const;
    QVariant rawValue(int row, int column) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QueryResult m_result;
    QStringList m_captions;
};
