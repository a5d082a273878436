// Two small widgets the forms use where Qt has no class of its own: a radio group or segmented
// control with a selected index, and an image view that shows a picture by file path.
#pragma once

#include <QLabel>
#include <QList>
#include <QWidget>

class QAbstractButton;
class QButtonGroup;

// The buttons inside it (radio buttons or checkable push buttons, in the order they were made)
// form one exclusive group. A button's id is its "tag" property when it has one, else its index.
class TwSegmentedControl : public QWidget {
    Q_OBJECT
public:
    explicit TwSegmentedControl(QWidget* parent = nullptr);

    QList<QAbstractButton*> buttons() const;
    // -1 when no segment is selected.
    int selectedIndex() const;
    // An index outside the segments clears the selection.
    void setSelectedIndex(int index);
    int selectedTag() const;
    // False, with the selection unchanged, when no segment has the tag.
    bool setSelectedTag(int tag);
    QButtonGroup* group() const { return m_group; }

signals:
    // A user clicked a segment.
    void segmentClicked(int index);

private:
    void collect() const;
    QButtonGroup* m_group;
};

class TwImageView : public QLabel {
    Q_OBJECT
public:
    explicit TwImageView(QWidget* parent = nullptr);

    QString imagePath() const { return m_path; }
    // An empty path, or one that names no readable picture, clears the view.
    void setImagePath(const QString& path);
    bool hasImage() const;

private:
    QString m_path;
};
