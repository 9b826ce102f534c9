#include "workbench/widgets/TabNotice.h"

#include <QLabel>
#include <QVBoxLayout>

namespace workbench
{

void layTabNotice(QWidget *page, const QString &sentence)
{
    if (page == nullptr || page->layout() != nullptr) {
        return;
    }
    auto *notice = new QLabel(sentence, page);
    notice->setTextFormat(Qt::PlainText);
    notice->setWordWrap(true);
    notice->setAlignment(Qt::AlignCenter);
    notice->setAccessibleName(sentence);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(notice);
}

}  // namespace workbench
