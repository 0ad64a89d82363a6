// SPDX-License-Identifier: MIT
#include "desktop/host/FilePanels.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

TEST(FilePanels, FiltersMatchInEitherCase) {
    const QStringList filters = desktop::nameFilters({"txt", "c3"});
    ASSERT_EQ(filters.size(), 2);
    const QString patterns = filters[0].section(u'(', 1).chopped(1);
    const auto offers = [&](const char* name) {
        return QDir::match(patterns.split(u' '), QString::fromUtf8(name));
    };
    EXPECT_TRUE(offers("stations.txt"));
    EXPECT_TRUE(offers("STATIONS.TXT"));
    EXPECT_TRUE(offers("a.C3"));
    EXPECT_FALSE(offers("txt"));
    EXPECT_FALSE(offers("stations.txt.gz"));
    EXPECT_EQ(desktop::nameFilters({}).size(), 1);
}

/// Answers the file dialogs and questions of a running panel, in order.
class Answers {
public:
    explicit Answers(std::vector<std::string> answers) : answers_(std::move(answers)) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { answerNext(); });
        timer_.start(0);
    }
    [[nodiscard]] bool allGiven() const { return next_ == answers_.size(); }

private:
    void answerNext() {
        QWidget* asking = QApplication::activeModalWidget();
        if (!asking || !asking->isVisible()) {
            return;
        }
        const std::string answer = allGiven() ? "" : answers_[next_++];
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
            ADD_FAILURE() << "no button " << answer;
            box->reject();
        } else {
            static_cast<QDialog*>(asking)->reject();
        }
    }

    std::vector<std::string> answers_;
    std::size_t next_ = 0;
    QTimer timer_;
};

TEST(FilePanels, NothingIsReplacedThatTheUserWasNotAskedAbout) {
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
    const std::vector<Case> cases{
        {"a free name", {in("new")}, in("new")},
        {"the name itself exists but is not written", {in("free.txt")}, in("free.txt")},
        {"replaced", {in("old.txt"), "Replace"}, in("old.txt")},
        {"refused, then another", {in("old"), "Cancel", in("new")}, in("new")},
        {"refused, then given up", {in("old"), "Cancel", ""}, std::nullopt},
        {"a folder is in the way", {in("folder"), "OK", in("new")}, in("new")},
        {"cancelled", {""}, std::nullopt},
    };
    desktop::FilePanels panels;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        const Answers answers(one.answers);
        const auto chosen = panels.savePanel(forced);
        EXPECT_EQ(chosen ? std::optional(chosen->path()) : std::nullopt, one.chosen);
        EXPECT_TRUE(answers.allGiven());
    }
    EXPECT_EQ(folder.read("old.STNPKG"), "precious");
}

TEST(FilePanels, OpensOneExistingFile) {
    const support::TemporaryFolder folder;
    const std::string file = folder.write("wörld list.TXT", "").string();
    desktop::FilePanels panels;
    {
        const Answers answers({file});
        const auto chosen = panels.openPanel({"txt"});
        ASSERT_TRUE(chosen.has_value());
        EXPECT_EQ(chosen->path(), file);
    }
    const Answers answers({""});
    EXPECT_FALSE(panels.openPanel({"txt"}).has_value());
}

} // namespace
