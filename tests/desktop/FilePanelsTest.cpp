// SPDX-License-Identifier: MIT
#include "desktop/host/FilePanels.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

/// Answers the file dialogs and questions of a running panel in order, and records what they show.
class Answers {
public:
    explicit Answers(std::vector<std::string> answers) : answers_(std::move(answers)) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { answerNext(); });
        timer_.start(0);
    }
    [[nodiscard]] bool allGiven() const { return next_ == answers_.size(); }

    /// What the last file dialog showed.
    QString folder;
    QString name;
    QStringList filters;
    /// The texts of all questions.
    QString asked;

private:
    void answerNext() {
        QWidget* asking = QApplication::activeModalWidget();
        if (!asking || !asking->isVisible()) {
            return;
        }
        const std::string answer = allGiven() ? "" : answers_[next_++];
        if (auto* dialog = qobject_cast<QFileDialog*>(asking)) {
            folder = dialog->directory().absolutePath();
            name = dialog->findChild<QLineEdit*>()->text();
            filters = dialog->nameFilters();
        }
        for (const QLabel* label : asking->findChildren<QLabel*>()) {
            if (qobject_cast<QMessageBox*>(asking)) {
                asked += label->text();
                EXPECT_FALSE(label->textFormat() != Qt::PlainText &&
                             Qt::mightBeRichText(label->text()))
                    << label->text().toStdString();
            }
        }
        if (auto* dialog = qobject_cast<QFileDialog*>(asking); dialog && !answer.empty()) {
            dialog->findChild<QLineEdit*>()->setText(QString::fromStdString(answer));
            dialog->findChild<QDialogButtonBox*>()->buttons().constFirst()->click();
        } else if (auto* box = qobject_cast<QMessageBox*>(asking); box && !answer.empty()) {
            for (QAbstractButton* button : box->buttons()) {
                if (button->text().remove(u'&').toStdString() == answer) {
                    button->click();
                    return;
                }
            }
            ADD_FAILURE() << "there is no button " << answer;
            box->reject();
        } else {
            static_cast<QDialog*>(asking)->reject();
        }
    }

    std::vector<std::string> answers_;
    std::size_t next_ = 0;
    QTimer timer_;
};

TEST(FilePanels, NothingIsReplacedWithoutAskingTheUser) {
    const support::TemporaryFolder folder;
    folder.write("old.STNPKG", "precious");
    folder.write("free.txt", "not in the way");
    std::filesystem::create_directory(folder / "folder.STNPKG");
    const auto in = [&](const char* name) { return (folder / name).string(); };
    const auto forced = [](const std::string& path) {
        return std::filesystem::path(path).replace_extension("STNPKG").string();
    };
    struct Case {
        const char* name;
        std::vector<std::string> answers;
        std::optional<std::string> chosen;
    };
    support::FakeUserDefaults settings;
    const std::vector<Case> cases{
        {"a free name", {in("new")}, in("new")},
        {"the name itself exists but is not written", {in("free.txt")}, in("free.txt")},
        {"replaced", {in("old.txt"), "Replace"}, in("old.txt")},
        {"refused, then another", {in("old"), "Cancel", in("new")}, in("new")},
        {"refused, then given up", {in("old"), "Cancel", ""}, std::nullopt},
        {"a folder is in the way", {in("folder"), "OK", in("new")}, in("new")},
        {"cancelled", {""}, std::nullopt},
    };
    desktop::FilePanels panels(settings);
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        const Answers answers(one.answers);
        const auto chosen = panels.savePanel(forced);
        EXPECT_EQ(chosen ? std::optional(chosen->path()) : std::nullopt, one.chosen);
        EXPECT_TRUE(answers.allGiven());
    }
    EXPECT_EQ(folder.read("old.STNPKG"), "precious");
}

TEST(FilePanels, QuestionsShowNamesAsPlainText) {
    const support::TemporaryFolder folder;
    std::filesystem::create_directories(folder / "<b>bold/<h1>large");
    folder.write("<b>bold/<h1>x\u202Egnp\n\u0007", "");
    struct {
        const char* inTheWay;
        const char* button;
        std::vector<const char*> words;
    } const cases[] = {
        {"<b>bold/<h1>large", "OK", {"“<h1>large” is a folder."}},
        {"<b>bold/<h1>x\u202Egnp\n\u0007",
         "Replace",
         {"“<h1>xgnp ” already exists.", "/<b>bold” overwrites"}},
    };
    support::FakeUserDefaults settings;
    desktop::FilePanels panels(settings);
    for (const auto& one : cases) {
        const Answers answers({(folder / "any").string(), one.button, ""});
        std::string written = (folder / one.inTheWay).string();
        const bool mayWrite =
            panels.savePanel([&](const std::string& /*chosen*/) { return written; }).has_value();
        EXPECT_EQ(mayWrite, std::string_view(one.button) == "Replace");
        for (const char* words : one.words) {
            EXPECT_TRUE(answers.asked.contains(QString::fromUtf8(words)))
                << answers.asked.toStdString();
        }
    }
}

TEST(FilePanels, ProposeANameAndTheLastFolder) {
    const support::TemporaryFolder folder;
    for (const char* name : {"lists", "packages"}) {
        std::filesystem::create_directory(folder / name);
    }
    const std::string list = folder.write("lists/wörld.2.txt", "").string();
    const std::string saved = (folder / "packages/mine").string();
    const auto forced = [](const std::string& path) {
        return std::filesystem::path(path).replace_extension("STNPKG").string();
    };
    // Any folder that the toolkit chooses.
    const QString elsewhere;
    const QString lists = QString::fromStdString((folder / "lists").string());
    const QString packages = QString::fromStdString((folder / "packages").string());
    struct {
        const char* name;
        bool isNewRun;
        bool opens;
        std::string answer;
        QString folder;
        const char* proposed;
    } const dialogs[] = {
        {"nothing opened", true, false, "", elsewhere, "Stations.STNPKG"},
        {"opened", false, true, list, elsewhere, ""},
        {"after what was opened", false, false, saved, lists, "wörld.2.STNPKG"},
        {"each has a folder of its own", true, true, "", lists, ""},
        {"saved in another run", false, false, "", packages, "Stations.STNPKG"},
    };
    support::FakeUserDefaults settings;
    std::optional<desktop::FilePanels> panels;
    for (const auto& one : dialogs) {
        SCOPED_TRACE(one.name);
        if (one.isNewRun) {
            panels.emplace(settings);
        }
        const Answers answers({one.answer});
        const auto chosen = one.opens ? panels->openPanel({"txt"}) : panels->savePanel(forced);
        EXPECT_EQ(chosen ? chosen->path() : "", one.answer);
        EXPECT_TRUE(one.folder == elsewhere || answers.folder == one.folder)
            << answers.folder.toStdString();
        EXPECT_EQ(answers.name, QString::fromUtf8(one.proposed));
        EXPECT_TRUE(answers.filters.constFirst().startsWith(
            QString::fromUtf8(one.opens ? "TXT files" : "STNPKG files (*.STNPKG)")));
    }
}

} // namespace
