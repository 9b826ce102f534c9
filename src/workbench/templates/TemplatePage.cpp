#include "workbench/templates/TemplatePage.h"

#include "files/base/DataFolder.h"
#include "workbench/widgets/Drops.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/MissingLine.h"
#include "workbench/widgets/PathEdit.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

const QString kTemplate = QStringLiteral("template");
const QString kOutput = QStringLiteral("output");

QLabel *makeLabel(const QString &name, QWidget *parent)
{
    auto *const label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->hide();
    return label;
}

/// The one template in a drag, or empty.
QString droppedTemplate(const QMimeData &data)
{
    const QStringList paths = droppedFiles(data);
    const bool isOne =
        paths.size() == 1 && paths.first().endsWith(QLatin1String(".xml"), Qt::CaseInsensitive);
    return isOne ? paths.first() : QString();
}

}  // namespace

TemplatePage::TemplatePage(const QString &key, const Texts &texts, QWidget *page)
    : QWidget(page), m_key(key), m_texts(texts)
{
    auto *const split = new QSplitter(Qt::Horizontal, this);
    split->setObjectName(key + QLatin1String("_split"));
    split->setChildrenCollapsible(false);
    auto *const left = new QWidget(split);
    auto *const right = new QWidget(split);
    buildLeft(left);
    m_right = new QVBoxLayout(right);
    m_right->setContentsMargins(6, 0, 0, 0);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    split->setSizes({820, 480});
    auto *const inside = new QHBoxLayout(this);
    inside->addWidget(split);
    auto *const layout = new QHBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(this);
    setAcceptDrops(true);
    tellMissing();
}

void TemplatePage::buildLeft(QWidget *left)
{
    auto *const column = new QVBoxLayout(left);
    column->setContentsMargins(0, 0, 6, 0);
    column->addWidget(makeFileGroup(left));
    QLabel *const description = makeLabel(m_key + QLatin1String("_description_label"), left);
    description->setText(m_texts.description);
    description->setFont(QFont(QStringLiteral("Times")));
    description->setStyleSheet(
        QStringLiteral("background-color: #ECF3FB; color: #1c1c1c; padding: 6px;"));
    description->show();
    column->addWidget(description);
    m_title = makeLabel(m_key + QLatin1String("_title_label"), left);
    m_title->setWordWrap(false);
    m_title->setStyleSheet(QStringLiteral("QLabel { color : #238BBF ; }"));
    m_title->setFont(QFont(QStringLiteral("Jumble"), 11, 75));
    m_title->setMinimumSize(52, 52);
    m_purpose = makeLabel(m_key + QLatin1String("_purpose_label"), left);
    column->addWidget(m_title);
    column->addWidget(m_purpose);
    m_rows = new ObkRows(m_key, left);
    column->addWidget(m_rows, 1);
    column->addWidget(makeOutputGroup(left));
    column->addLayout(makeFoot(left));
}

QWidget *TemplatePage::makeFileGroup(QWidget *parent)
{
    auto *const group = new QGroupBox(parent);
    group->setObjectName(m_key + QLatin1String("_xml_group"));
    auto *const line = new QHBoxLayout(group);
    auto *const label = new QLabel(tr("XML file"), group);
    m_path = new QLineEdit(group);
    nameWidget(m_path, m_key + QLatin1String("_xml_edit"), tr("XML file"));
    m_path->setPlaceholderText(tr("Select an input XML File "));
    m_path->setReadOnly(true);
    m_path->setToolTip(
        tr("The template that the form shows\n\"Open\" chooses it; it can be dropped "
           "here, too"));
    label->setBuddy(m_path);
    m_open = new QPushButton(tr("Open"), group);
    nameWidget(m_open, m_key + QLatin1String("_xml_open"), tr("XML file Open"));
    m_open->setToolTip(tr("Opens a template (.xml)"));
    m_refresh = new QPushButton(QIcon(QStringLiteral(":/refreshIcon.png")), QString(), group);
    nameWidget(m_refresh, m_texts.refreshName, tr("XML file Refresh"));
    m_refresh->setToolTip(tr("Opens the same template again"));
    line->addWidget(label);
    line->addWidget(m_path, 1);
    line->addWidget(m_open);
    line->addWidget(m_refresh);
    connect(m_open, &QPushButton::clicked, this, &TemplatePage::openPressed);
    connect(m_refresh, &QPushButton::clicked, this, &TemplatePage::refreshPressed);
    return group;
}

QWidget *TemplatePage::makeOutputGroup(QWidget *parent)
{
    auto *const group = new QGroupBox(tr("Output File"), parent);
    auto *const line = new QHBoxLayout(group);
    m_outputLabel = new QLabel(group);
    m_outputLabel->setTextFormat(Qt::PlainText);
    m_output = new PathEdit(m_key + QLatin1String("_output"), PathEdit::Use::Output, group);
    nameWidget(m_output, m_key + QLatin1String("_output_edit"), tr("Output File"));
    m_output->setToolTip(plainToolTip(m_texts.outputTip));
    m_output->setPlaceholderText(m_texts.outputHint);
    m_outputLabel->setBuddy(m_output);
    m_folder = new QPushButton(tr("Select Path"), group);
    nameWidget(m_folder, m_key + QLatin1String("_output_folder"), tr("Output File Select Path"));
    line->addWidget(m_outputLabel);
    line->addWidget(m_output, 1);
    line->addWidget(m_folder);
    connect(m_folder, &QPushButton::clicked, this, &TemplatePage::folderPressed);
    connect(m_output, &QLineEdit::textChanged, this, [this] {
        tellMissing();
        emit outputChanged();
    });
    return group;
}

QHBoxLayout *TemplatePage::makeFoot(QWidget *parent)
{
    m_warning = new QWidget(parent);
    auto *const warningLine = new QHBoxLayout(m_warning);
    warningLine->setContentsMargins(0, 0, 0, 0);
    auto *const icon = new QLabel(m_warning);
    icon->setPixmap(QIcon(QStringLiteral(":/warningIcon.png")).pixmap(20, 20));
    m_warningText = new QLabel(m_warning);
    m_warningText->setObjectName(m_key + QLatin1String("_warning_label"));
    m_warningText->setWordWrap(true);
    warningLine->addWidget(icon);
    warningLine->addWidget(m_warningText, 1);
    m_warning->hide();
    m_missing = new MissingLine(m_key, parent);
    connect(m_missing, &MissingLine::chosen, this, [this](const QString &name) {
        QWidget *const input = name == kOutput ? static_cast<QWidget *>(m_output) : m_open;
        input->setFocus(Qt::OtherFocusReason);
    });
    m_generate = new QPushButton(parent);
    m_generate->setObjectName(m_key + QLatin1String("_generate_ok"));
    m_generate->setStyleSheet(QStringLiteral("height: 40px;width: 150px;"));
    connect(m_generate, &QPushButton::clicked, this, &TemplatePage::generatePressed);
    auto *const told = new QVBoxLayout;
    told->addWidget(m_warning);
    told->addWidget(m_missing);
    auto *const foot = new QHBoxLayout;
    foot->addLayout(told, 1);
    foot->addWidget(m_generate);
    return foot;
}

void TemplatePage::setGenerate(const QString &caption, const QString &toolTip)
{
    m_generate->setText(caption);
    nameWidget(m_generate, m_key + QLatin1String("_generate_ok"), caption);
    m_generate->setToolTip(toolTip);
}

/// The button stays enabled: what is missing has sentences of its own.
void TemplatePage::tellMissing()
{
    QList<MissingLine::Input> missing;
    if (m_path->text().isEmpty()) {
        missing.append({kTemplate, tr("XML file")});
    } else if (m_output->text().isEmpty()) {
        missing.append({kOutput, m_texts.outputNoun});
    }
    m_missing->tell(missing);
}

QString TemplatePage::askForTemplate(QWidget *boxParent) const
{
    QSettings folders = {QDir::homePath() + QStringLiteral("/.VDR32FlashBench/config.ini"),
                         QSettings::IniFormat};
    QString start = folders.value(m_texts.folderKey).toString();
    if (!QFileInfo(start).isDir()) {
        start = files::installedPath(m_texts.folder);
    }
    QString path =
        QFileDialog::getOpenFileName(boxParent, tr("Open file"), start, tr("XML files (*.xml)"));
    if (!path.isEmpty()) {
        folders.setValue(m_texts.folderKey, QFileInfo(path).path());
    }
    return path;
}

void TemplatePage::lockTemplate()
{
    m_isLocked = true;
    const QString why = QLatin1Char('\n') + tr("The command line chose it");
    m_path->setEnabled(false);
    m_path->setToolTip(tr("The template that the form shows") + why);
    m_open->setEnabled(false);
    m_open->setToolTip(tr("Opens a template (.xml)") + why);
}

void TemplatePage::showTemplate(const QString &path, const obk::Template &model,
                                const QString &output, std::initializer_list<QWidget *> following)
{
    m_path->setText(path);
    m_title->setText(model.title);
    m_title->show();
    const QString folder = QFileInfo(path).path();
    m_rows->build(model, folder);
    m_output->setBase(folder);
    for (const ObDataItem &item : model.items) {
        if (item.kind == obk::ItemKind::Output) {
            m_output->setPath(output);
            m_output->setToolTip(plainToolTip(item.tooltip.value_or(m_texts.outputTip)));
            m_outputLabel->setText(item.nameText());
        }
    }
    m_rows->leadFocusTo({m_output, m_folder, m_missing, m_generate});
    QWidget *before = m_generate;
    for (QWidget *const widget : following) {
        setTabOrder(before, widget);
        before = widget;
    }
    tellMissing();
}

void TemplatePage::setPurpose(const QString &text)
{
    m_purpose->setText(text);
    m_purpose->setVisible(!text.isEmpty());
}

void TemplatePage::setWarning(const QString &text)
{
    m_warningText->setText(text);
    m_warning->setVisible(!text.isEmpty());
}

QString TemplatePage::outputPath() const
{
    return m_output->path();
}

void TemplatePage::chooseOutput(const QString &path)
{
    m_output->choose(path);
}

QLabel *TemplatePage::makeHeading(const QString &text, QWidget *parent)
{
    auto *const heading = new QLabel(text, parent);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    return heading;
}

void TemplatePage::dragEnterEvent(QDragEnterEvent *event)
{
    if (!m_isLocked && !droppedTemplate(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void TemplatePage::dropEvent(QDropEvent *event)
{
    const QString path = droppedTemplate(*event->mimeData());
    if (m_isLocked || path.isEmpty()) {
        return;
    }
    event->acceptProposedAction();
    // Queued: a box raised while the drop is still going on would block the program it came from.
    QMetaObject::invokeMethod(
        this, [this, path] { emit templateDropped(path); }, Qt::QueuedConnection);
}

}  // namespace workbench
