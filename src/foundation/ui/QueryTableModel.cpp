#include "foundation/ui/QueryTableModel.h"

#include <QDate>
#include <QDateTime>

QueryTableModel::QueryTableModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void QueryTableModel::setResult(const QueryResult &result, const QStringList &captions)
{
    beginResetModel();
    m_result = result;
    m_captions = result.columns;
    for (int i = 0; i < captions.size() && i < m_captions.size(); ++i)
        m_captions[i] = captions.at(i);
    endResetModel();
}

int QueryTableModel::columnOf(const QString &captionOrName) const
{
    for (int i = 0; i < m_captions.size(); ++i)
        if (m_captions.at(i).compare(captionOrName, Qt::CaseInsensitive) == 0)
            return i;
    for (int i = 0; i < m_result.columns.size(); ++i)
        if (m_result.columns.at(i).compare(captionOrName, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QVariant QueryTableModel::rawValue(int row, int column) const
{
    if (row < 0 || row >= m_result.size())
        return QVariant();
    return m_result.at(row).value(column);
}

int QueryTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_result.size();
}

int QueryTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_captions.size();
}

QVariant QueryTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const QVariant v = rawValue(index.row(), index.column());
    if (role == Qt::DisplayRole) {
        if (v.isNull())
            return QString();
        if (v.metaType().id() == QMetaType::QDate)
            return v.toDate().toString(QStringLiteral("dd/MM/yyyy"));
        if (v.metaType().id() == QMetaType::QDateTime)
            return v.toDateTime().date().toString(QStringLiteral("dd/MM/yyyy"));
        return v.toString();
    }
    if (role == Qt::TextAlignmentRole) {
        switch (v.metaType().id()) {
        case QMetaType::Int: case QMetaType::LongLong: case QMetaType::Double:
        case QMetaType::UInt: case QMetaType::ULongLong:
            return int(Qt::AlignRight | Qt::AlignVCenter);
        default:
            return int(Qt::AlignLeft | Qt::AlignVCenter);
        }
    }
    return QVariant();
}

QVariant QueryTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    if (orientation == Qt::Horizontal)
        return section < m_captions.size() ? m_captions.at(section) : QVariant();
    return section + 1;
}
