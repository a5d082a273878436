#include "TwPaperSizeTableModel.h"

TwPaperSizeTableModel::TwPaperSizeTableModel(QObject* parent) : QAbstractTableModel(parent) {}

void TwPaperSizeTableModel::setPapers(const TwValue& papers) {
    beginResetModel();
    m_papers = papers.isArray() ? papers : TwValue();
    endResetModel();
}

QString TwPaperSizeTableModel::columnIdentifier(int column) {
    switch (column) {
    case NameColumn:
        return QStringLiteral("Name");
    case SizeColumn:
        return QStringLiteral("Size");
    default:
        return QString();
    }
}

TwValue TwPaperSizeTableModel::paper(int row) const {
    const TwArray* list = m_papers.list();
    if (!list || row < 0 || std::size_t(row) >= list->size())
        return {};
    return (*list)[std::size_t(row)];
}

int TwPaperSizeTableModel::rowOfName(const QString& name) const {
    const TwValue wanted(name.toStdString());
    for (int row = 0; row < rowCount(); ++row) {
        const TwValue entry = paper(row);
        if (entry.dict() && entry.dict()->value("Name").isEqual(wanted))
            return row;
    }
    return -1;
}

int TwPaperSizeTableModel::appendPaper(const TwValue& paper) {
    TwArray* list = m_papers.list();
    if (!list)
        return -1;
    const int row = int(list->size());
    beginInsertRows(QModelIndex(), row, row);
    list->push_back(paper);
    endInsertRows();
    return row;
}

void TwPaperSizeTableModel::removePaper(int row) {
    TwArray* list = m_papers.list();
    if (!list || row < 0 || std::size_t(row) >= list->size())
        return;
    beginRemoveRows(QModelIndex(), row, row);
    list->erase(list->begin() + row);
    endRemoveRows();
}

void TwPaperSizeTableModel::redraw() {
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {Qt::DisplayRole});
}

int TwPaperSizeTableModel::rowCount(const QModelIndex& parent) const {
    const TwArray* list = m_papers.list();
    return parent.isValid() || !list ? 0 : int(list->size());
}

int TwPaperSizeTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : 2;
}

QVariant TwPaperSizeTableModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid())
        return {};
    const TwValue entry = paper(index.row());
    const TwDictionary* d = entry.dict();
    if (!d)
        return {};
    if (index.column() == NameColumn)
        return QString::fromStdString(d->value("Name").stringValue());
    if (index.column() == SizeColumn && m_sizeText)
        return m_sizeText(d->value("Width").doubleValue(), d->value("Length").doubleValue());
    return {};
}

QVariant TwPaperSizeTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case SizeColumn:
        return tr("Size");
    default:
        return {};
    }
}
