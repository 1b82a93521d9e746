#include "sim/sim_dialogs.h"

#include <utility>

namespace Corvetape {

namespace {

template <typename Answer>
Answer NextOf(std::deque<Answer>& answers, Answer otherwise) {
    if (answers.empty()) return otherwise;
    Answer answer = std::move(answers.front());
    answers.pop_front();
    return answer;
}

}  // namespace

void SimDialogs::Show(const ShownBox& box) {
    Boxes.push_back(box);
    ++Open;
    if (WhileOpen) WhileOpen(box);
    --Open;
}

void SimDialogs::ShowMessage(const std::string& text, DialogIcon icon) {
    Show({BoxKind::Message, text, icon, {}, {}});
}

void SimDialogs::ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) {
    Show({BoxKind::Message, text, icon, {}, {}, title});
}

bool SimDialogs::AskYesNo(const std::string& text, DialogIcon icon) {
    Show({BoxKind::YesNo, text, icon, {}, {}});
    return NextOf(YesNoAnswers, false);
}

bool SimDialogs::AskNoYes(const std::string& text, DialogIcon icon) {
    Show({BoxKind::NoYes, text, icon, {}, {}});
    return NextOf(YesNoAnswers, false);
}

bool SimDialogs::AskOkCancel(const std::string& text, DialogIcon icon) {
    Show({BoxKind::OkCancel, text, icon, {}, {}});
    return NextOf(YesNoAnswers, false);
}

std::optional<std::string> SimDialogs::BrowseForFolder(const std::string& title, const std::string& start) {
    Show({BoxKind::Folder, title, DialogIcon::Information, {}, start});
    return NextOf(FolderAnswers, std::optional<std::string>());
}

std::optional<std::string> SimDialogs::OpenFile(const std::string& title, const std::string& filter,
                                                const std::string& start) {
    Show({BoxKind::File, title, DialogIcon::Information, filter, start});
    return NextOf(FileAnswers, std::optional<std::string>());
}

std::vector<std::string> SimDialogs::OpenFiles(const std::string& title, const std::string& filter,
                                               const std::string& start) {
    Show({BoxKind::File, title, DialogIcon::Information, filter, start});
    return NextOf(FilesAnswers, std::vector<std::string>());
}

}  // namespace Corvetape
