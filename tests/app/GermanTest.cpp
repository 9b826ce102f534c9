// The window in another language: everything that is read changes, nothing that is kept does.
#include "app/SettingsFixture.h"
#include "app/Translation.h"
#include "workbench/forms/RowForm.h"

#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QTableWidget>
#include <QTranslator>

using namespace workbench;

namespace
{

/// While it lives, windows that are made speak German.
class German
{
public:
    explicit German(const QStringList &wanted = {"de-DE", "de"})
        : language(app::installTranslation(*qApp, wanted))
    {
    }
    ~German()
    {
        for (auto *translator : qApp->findChildren<QTranslator *>()) {
            delete translator;
        }
    }
    German(const German &) = delete;
    German &operator=(const German &) = delete;

    QString language;
};

void tellHeaders(const QAbstractItemModel &model, const QString &name, QMap<QString, QString> &all)
{
    for (int column = 0; column < model.columnCount(); ++column) {
        const auto at = QString::number(column);
        all[name + " column " + at] = model.headerData(column, Qt::Horizontal).toString();
        all[name + " column tip " + at] =
            model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
    }
    for (int row = 0; row < model.rowCount(); ++row) {
        all[name + " row " + QString::number(row)] = model.headerData(row, Qt::Vertical).toString();
    }
}

void tellTexts(const QObject &object, const QString &name, QMap<QString, QString> &all)
{
    for (const char *property :
         {"text", "toolTip", "accessibleName", "accessibleDescription", "placeholderText",
          "windowTitle", "title", "statusTip", "specialValueText", "prefix", "suffix"}) {
        const auto value = object.property(property).toString();
        if (!value.isEmpty()) {
            all[name + ' ' + property] = value;
        }
    }
    if (const auto *box = qobject_cast<const QComboBox *>(&object)) {
        for (int i = 0; i < box->count(); ++i) {
            all[name + " entry " + QString::number(i)] = box->itemText(i);
        }
    } else if (const auto *tabs = qobject_cast<const QTabWidget *>(&object)) {
        for (int i = 0; i < tabs->count(); ++i) {
            all[name + " tab " + QString::number(i)] = tabs->tabText(i);
        }
    } else if (const auto *view = qobject_cast<const QAbstractItemView *>(&object)) {
        if (view->model() != nullptr) {
            tellHeaders(*view->model(), name, all);
        }
    }
}

/// All texts of a window by the place where they stand. Places are counted, because not all that is
/// shown has a name.
QMap<QString, QString> textsOf(const WindowUnderTest &window)
{
    QMap<QString, QString> all;
    int place = 0;
    for (const QObject *object : window->findChildren<QObject *>()) {
        const QString name = QStringLiteral("%1 %2 %3")
                                 .arg(++place, 5)
                                 .arg(object->metaObject()->className(), object->objectName());
        all[name] = QString();
        tellTexts(*object, name, all);
    }
    tellTexts(*window, "window", all);
    return all;
}

/// Names, file kinds and numbers: the same in every language.
bool isSameInGerman(const QString &text)
{
    // The last two are the toolkit's own, German where its translations are installed.
    static const QSet<QString> words{
        "SFIx",         "OBkey",          "Name",        "Index",       "Inde&x", "Block",
        "Token",        "&Token",         "&PIN",        "Bytes",       "Nonce",  "Hash",
        "0x…",          "P-256, .pem",    "Info",        "Res.",        "&Info",  "Register",
        "Image, .ssfi", "12 Bytes, .bin", "Scroll Left", "Scroll Right"};
    static const QRegularExpression unread(
        "^(VDR32[\\w/ ]*|0x[0-9A-Fa-f]*|[A-Z ]+|[^A-Za-z]*|Bit \\d+.*|/.*)$");
    return words.contains(text) || unread.match(text).hasMatch();
}

class GermanWindow : public SettingsFixture
{
};

TEST_F(GermanWindow, SaysNothingInEnglishAndKeepsItsNames)
{
    QMap<QString, QString> english;
    {
        const WindowUnderTest window;
        english = textsOf(window);
    }
    const German german;
    ASSERT_EQ(german.language, "de");
    const WindowUnderTest window;
    const QMap<QString, QString> shown = textsOf(window);
    EXPECT_EQ(shown.keys(), english.keys());
    int changed = 0;
    for (auto at = shown.begin(); at != shown.end(); ++at) {
        const bool isSame = at.value() == english.value(at.key());
        changed += isSame ? 0 : 1;
        EXPECT_TRUE(!isSame || isSameInGerman(at.value()))
            << at.key().toStdString() << ": " << at.value().toStdString();
    }
    EXPECT_GT(changed, 500);
}

TEST_F(GermanWindow, LeadsEachMnemonicToOnePlace)
{
    const German german;
    const WindowUnderTest window;
    const auto keyOf = [](const QString &text) { return QKeySequence::mnemonic(text).toString(); };
    QStringList bar;
    for (const QAction *menu : window->menus->actions()) {
        bar << keyOf(menu->text());
        QStringList entries;
        for (const QAction *entry : menu->menu()->actions()) {
            entries << keyOf(entry->text());
        }
        entries.removeAll(QString());
        EXPECT_EQ(entries.removeDuplicates(), 0) << entries.join(' ').toStdString();
    }
    for (const Tab *tab : window.form().tabs()) {
        QStringList taken = bar;
        for (const QLabel *label : tab->page()->findChildren<QLabel *>()) {
            if (label->buddy() != nullptr) {
                taken << keyOf(label->text());
            }
        }
        for (const QAbstractButton *button : tab->page()->findChildren<QAbstractButton *>()) {
            taken << keyOf(button->text());
        }
        taken.removeAll(QString());
        EXPECT_EQ(taken.removeDuplicates(), 0)
            << tab->key().toStdString() << ": " << taken.join(' ').toStdString();
    }
}

// Settings of a window in one language are those of the next in another.
TEST_F(GermanWindow, SavesTheSameSettings)
{
    const auto savedBy = [this] {
        const WindowUnderTest window;
        fill(window, "sfi_ram_edit", "0x1E000");
        fill(window, "da_class_edit", "0x450");
        for (const char *box :
             {"sfi_mcu_combo", "da_role_combo", "da_lifecycle_combo", "hsm_mcu_combo"}) {
            if (auto *found = window->findChild<QComboBox *>(box)) {
                found->setCurrentIndex(found->count() - 1);
            }
        }
        window->close();
        const QByteArray saved = contentsOf(settingsPath());
        removeSettings();
        return saved;
    };
    const QByteArray english = savedBy();
    const German german;
    EXPECT_EQ(savedBy().toStdString(), english.toStdString());
    EXPECT_TRUE(english.contains("OTHER"));
}

// The user's first language that the program speaks; English is one.
TEST(Translation, TakesTheFirstLanguageThatIsThere)
{
    EXPECT_EQ(German({"de-AT"}).language, "de");
    EXPECT_EQ(German({"fr-FR", "de-CH"}).language, "de");
    EXPECT_EQ(German({"en-GB", "de-DE"}).language, "en");
    EXPECT_EQ(German({"tr-TR"}).language, "en");
    EXPECT_EQ(German(QStringList()).language, "en");
    EXPECT_EQ(QCoreApplication::translate("any", "&File"), "&File");
    const German german;
    EXPECT_EQ(QCoreApplication::translate("any", "&File"), "&Datei");
    EXPECT_EQ(QCoreApplication::translate("any", "told in a box"), "told in a box");
}

}  // namespace
