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
        auto* asking = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!asking || !asking->isVisible()) {
            return;
        }
        const auto answer = QString::fromStdString(allGiven() ? "" : answers_[next_++]);
        QAbstractButton* chosen = nullptr;
        if (auto* dialog = qobject_cast<QFileDialog*>(asking)) {
            auto& field = *dialog->findChild<QLineEdit*>();
            folder = dialog->directory().absolutePath();
            name = field.text();
            filters = dialog->nameFilters();
            field.setText(answer);
            chosen = dialog->findChild<QDialogButtonBox*>()->buttons().constFirst();
        }
        if (auto* box = qobject_cast<QMessageBox*>(asking)) {
            for (const QLabel* label : box->findChildren<QLabel*>()) {
                asked += label->text();
                EXPECT_TRUE(label->textFormat() == Qt::PlainText ||
                            !Qt::mightBeRichText(label->text()))
                    << label->text().toStdString();
            }
            for (QAbstractButton* button : box->buttons()) {
                chosen = button->text().remove(u'&') == answer ? button : chosen;
            }
            EXPECT_TRUE(chosen || answer.isEmpty()) << "no button " << answer.toStdString();
        }
        if (chosen && !answer.isEmpty()) {
            chosen->click();
        } else {
            asking->reject();
        }
    }

    std::vector<std::string> answers_;
    std::size_t next_ = 0;
    QTimer timer_;
};

struct FilePanelsTest : testing::Test {
    [[nodiscard]] std::string in(const char* name) const { return (folder / name).string(); }
    static std::string forced(const std::string& path) {
        return std::filesystem::path(path).replace_extension("STNPKG").string();
    }

    support::TemporaryFolder folder;
    support::FakeUserDefaults settings;
};

TEST_F(FilePanelsTest, NothingIsReplacedWithoutAskingTheUser) {
    folder.write("old.STNPKG", "precious");
    folder.write("free.txt", "not in the way");
    std::filesystem::create_directory(folder / "folder.STNPKG");
    const struct {
        const char* name;
        std::vector<std::string> answers;
        std::string chosen;
    } cases[] = {
        {"a free name", {in("new")}, in("new")},
        {"the name itself exists but is not written", {in("free.txt")}, in("free.txt")},
        {"replaced", {in("old.txt"), "Replace"}, in("old.txt")},
        {"refused, then another", {in("old"), "Cancel", in("new")}, in("new")},
        {"refused, then given up", {in("old"), "Cancel", ""}, ""},
        {"a folder is in the way", {in("folder"), "OK", in("new")}, in("new")},
        {"cancelled", {""}, ""},
    };
    desktop::FilePanels panels(settings);
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        const Answers answers(one.answers);
        const auto chosen = panels.savePanel(forced);
        EXPECT_EQ(chosen ? chosen->path() : "", one.chosen);
        EXPECT_TRUE(answers.allGiven());
    }
    EXPECT_EQ(folder.read("old.STNPKG"), "precious");
}

TEST_F(FilePanelsTest, QuestionsShowNamesAsPlainText) {
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
    desktop::FilePanels panels(settings);
    for (const auto& one : cases) {
        const Answers answers({in("any"), one.button, ""});
        const auto chosen = panels.savePanel([&](const auto&) { return in(one.inTheWay); });
        EXPECT_EQ(chosen.has_value(), std::string_view(one.button) == "Replace");
        for (const char* words : one.words) {
            EXPECT_TRUE(answers.asked.contains(words)) << answers.asked.toStdString();
        }
    }
}

TEST_F(FilePanelsTest, ProposeANameAndTheLastFolder) {
    for (const char* name : {"lists", "packages"}) {
        std::filesystem::create_directory(folder / name);
    }
    const std::string list = folder.write("lists/wörld.2.txt", "").string();
    const std::string saved = in("packages/mine");
    // Any folder that the toolkit chooses.
    const QString elsewhere;
    const QString lists = QString::fromStdString(in("lists"));
    const QString packages = QString::fromStdString(in("packages"));
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
        EXPECT_EQ(answers.name, one.proposed);
        EXPECT_TRUE(answers.filters.constFirst().startsWith(one.opens ? "TXT files"
                                                                      : "STNPKG files (*.STNPKG)"));
    }
}

} // namespace
