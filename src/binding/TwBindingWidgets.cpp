#include "TwBindingWidgets.h"

#include "OrvaDebug.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QPixmap>

TwSegmentedControl::TwSegmentedControl(QWidget* parent) : QWidget(parent), m_group(new QButtonGroup(this)) {
    m_group->setExclusive(true);
    connect(m_group, &QButtonGroup::buttonClicked, this, [this](QAbstractButton* button) {
        int index = int(buttons().indexOf(button));
        if (index >= 0)
            emit segmentClicked(index);
    });
}

// Buttons made after the control (a form adds its children later) join on first use.
void TwSegmentedControl::collect() const {
    const auto children = findChildren<QAbstractButton*>();
    for (QAbstractButton* b : children) {
        if (m_group->buttons().contains(b))
            continue;
        b->setCheckable(true);
        QVariant tag = b->property("tag");
        bool ok = false;
        int id = tag.isValid() ? tag.toInt(&ok) : -1;
        m_group->addButton(b, ok ? id : int(m_group->buttons().size()));
    }
}

QList<QAbstractButton*> TwSegmentedControl::buttons() const {
    collect();
    return m_group->buttons();
}

int TwSegmentedControl::selectedIndex() const {
    const auto list = buttons();
    for (int i = 0; i < list.size(); ++i)
        if (list[i]->isChecked())
            return i;
    return -1;
}

void TwSegmentedControl::setSelectedIndex(int index) {
    const auto list = buttons();
    if (index >= 0 && index < list.size()) {
        list[index]->setChecked(true);
        return;
    }
    // An exclusive group keeps one button checked; leave it open to clear.
    m_group->setExclusive(false);
    for (QAbstractButton* b : list)
        b->setChecked(false);
    m_group->setExclusive(true);
}

int TwSegmentedControl::selectedTag() const {
    collect();
    return m_group->checkedId();
}

bool TwSegmentedControl::setSelectedTag(int tag) {
    collect();
    QAbstractButton* b = m_group->button(tag);
    if (!b)
        return false;
    b->setChecked(true);
    return true;
}

TwImageView::TwImageView(QWidget* parent) : QLabel(parent) {
    setAlignment(Qt::AlignCenter);
}

void TwImageView::setImagePath(const QString& path) {
    m_path = path;
    QPixmap picture;
    if (!path.isEmpty() && !picture.load(path))
        OrvaLog(kOrvaLogDebug, "\t%s: no picture at '%s'\n", "TwImageView::setImagePath",
                path.toUtf8().constData());
    setPixmap(picture);
}

bool TwImageView::hasImage() const {
    return !pixmap().isNull();
}
