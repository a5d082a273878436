// The custom paper sizes as a table: the settings model's own list of papers ("Name", "Width",
// "Length" in millimetres), presented as it is, never copied. Changes to the list go through this
// table so that the view hears of them.
#pragma once

#include "TwValue.h"

#include <QAbstractTableModel>
#include <QString>

#include <functional>

class TwPaperSizeTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { NameColumn = 0, SizeColumn = 1 };
    // The text of the size column for a width and a length in millimetres.
    using SizeText = std::function<QString(double widthMillimetres, double lengthMillimetres)>;

    explicit TwPaperSizeTableModel(QObject* parent = nullptr);

    // The live list; null (or anything but a list) shows no rows.
    void setPapers(const TwValue& papers);
    const TwValue& papers() const { return m_papers; }
    void setSizeText(SizeText sizeText) { m_sizeText = std::move(sizeText); }

    // "Name" or "Size": the identifier of a column.
    static QString columnIdentifier(int column);

    // The paper at the row, or null.
    TwValue paper(int row) const;
    // The first row whose "Name" equals name, or -1.
    int rowOfName(const QString& name) const;
    // Appends the paper to the list and answers its row; -1 when there is no list.
    int appendPaper(const TwValue& paper);
    void removePaper(int row);
    // Every row shows itself again (after a unit change or a paper saved over).
    void redraw();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    TwValue m_papers;
    SizeText m_sizeText;
};
