#include "sim/sim_documents.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

/// The member of a sequence by index or by its name.
template <typename Members, typename NameOf>
auto Member(Members& members, const MemberKey& key, NameOf nameOf) {
    if (const auto* index = std::get_if<int32_t>(&key)) {
        const bool there = *index >= 0 && static_cast<size_t>(*index) < members.size();
        return there ? members.begin() + *index : members.end();
    }
    return std::ranges::find(members, std::get<std::string>(key), nameOf);
}

class OpenDocument : public Document {
 public:
    OpenDocument(std::shared_ptr<SimDocument> document, std::shared_ptr<SimPage> page)
        : Shown(std::move(document)), Page(std::move(page)) {}

    std::string Url() const override { return Shown->Url; }

    std::optional<std::string> Title() override {
        if (!Ask()) return std::nullopt;
        return Shown->Title;
    }

    std::shared_ptr<Document> Frame(const MemberKey& frame) override {
        if (!Ask()) return nullptr;
        const auto found = Member(Shown->Frames, frame, [](const auto& each) { return each.first; });
        if (found == Shown->Frames.end()) return nullptr;
        return std::make_shared<OpenDocument>(found->second, Page);
    }

    bool HasBody() override { return Ask() && Shown->Body; }

    std::optional<ElementText> Element(const MemberKey& element) override {
        if (!Ask()) return std::nullopt;
        const auto found = Member(Shown->All, element, [](const SimElement& each) { return each.Name; });
        if (found == Shown->All.end()) return std::nullopt;
        return found->Text;
    }

    std::optional<std::string> Evaluate(const std::string& expression) override {
        if (!Ask()) return std::nullopt;
        const auto found = Shown->Values.find(expression);
        if (found == Shown->Values.end()) return std::nullopt;
        return found->second;
    }

    bool Run(const std::string& expression) override {
        if (!Ask()) return false;
        Shown->Ran.push_back(expression);
        if (Shown->WhenRun) Shown->WhenRun(expression);
        return Shown->Values.contains(expression);
    }

 private:
    bool Ask() {
        if (Shown->Asked) Shown->Asked();
        return Page->Answers;
    }

    std::shared_ptr<SimDocument> Shown;
    std::shared_ptr<SimPage> Page;
};

}  // namespace

SimPage& SimDocuments::Add(const std::string& url, const std::string& title) {
    auto page = std::make_shared<SimPage>();
    page->Id = "page" + std::to_string(++Made);
    page->Top->Url = url;
    page->Top->Title = title;
    All.push_back(std::move(page));
    return *All.back();
}

void SimDocuments::Close(SimPage& page) {
    page.Answers = false;
    std::erase_if(All, [&](const auto& each) { return each.get() == &page; });
}

std::vector<PageInfo> SimDocuments::Pages() {
    std::vector<PageInfo> pages;
    for (const auto& page : All) {
        pages.push_back(
            {page->Id, page->Top->Url, page->KnownTitle.value_or(page->Top->Title), page->Product});
    }
    return pages;
}

std::shared_ptr<Document> SimDocuments::Open(const PageInfo& page) {
    ++Opened;
    const auto found = std::ranges::find(All, page.Id, [](const auto& each) { return each->Id; });
    if (found == All.end() || !(*found)->Answers) return nullptr;
    return std::make_shared<OpenDocument>((*found)->Top, *found);
}

}  // namespace Corvetape
