// How pages come upon the stack of a navigation, and leave it.
#include "platform/foundation/Result.h"
#include "platform/foundation/Unicode.h"
#include "platform/messaging/Dispatch.h"
#include "settings/host/Navigation.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <functional>
#include <iostream>
#include <utility>

namespace settings {

using namespace platform;

namespace {

/// A page that has settings of an earlier answer does not wait for its own, which takes a hundredth of this.
constexpr std::chrono::milliseconds kTimeForAnswer{30};

std::uint64_t nextPageId() {
    static std::uint64_t last = 0;
    return ++last;
}

/// Runs code of a page, which may be a stranger's. Fails when it throws.
Result<void> attempt(const std::function<void()>& work) {
    try {
        work();
        return {};
    } catch (const std::exception& thrown) {
        return Result<void>::failure(*thrown.what() ? thrown.what() : "it throws an exception without a word");
    } catch (...) {
        return Result<void>::failure("it throws what is no exception");
    }
}

/// Either text may be a stranger's.
void complain(const std::string& className, const char* ofWhat, const std::string& fault) {
    std::cerr << "lumora-settings: the page " << printable(className) << ofWhat << printable(fault) << std::endl;
}

} // namespace

bool Navigation::openFromRow(const std::string& className) {
    const PSSpecifierList rows = pages_.back().controller->specifiers();
    if (!rows) return false;
    const auto row = std::ranges::find_if(*rows, [&](const auto& one) { return one->detail().name() == className; });
    return row != rows->end() && open((*row)->detail().resolve(), (*row)->name(), *row);
}

bool Navigation::open(Class pageClass, const std::string& title, const PSSpecifierRef& row) {
    if (!pageClass) return false;
    return change(pageClass, [&] {
        auto page = make(pageClass, title, row);
        if (!page) return false;
        // The answer to the page's own request may still come later, and then the rows show what was answered before.
        dispatch_wait_until_idle(kTimeForAnswer);
        push(std::move(page), pageClass);
        appear(pages_.size() > 1);
        return true;
    });
}

/// Null when the class makes no page.
std::shared_ptr<PSListController> Navigation::make(Class pageClass, const std::string& title,
                                                   const PSSpecifierRef& row) {
    publish(Opening{pageClass->name, title});
    auto page = std::dynamic_pointer_cast<PSListController>(pageClass->make());
    if (!page) return nullptr;
    if (!title.empty()) page->setTitle(title);
    page->setSpecifier(row);
    return page;
}

void Navigation::push(std::shared_ptr<PSListController> page, Class pageClass) {
    opened_.insert(pageClass);
    pages_.push_back({nextPageId(), std::move(page), pageClass, nullptr, contentSize_});
}

/// Opens a page of that class by `work`. If that gives false or throws, all pages are as they were before.
bool Navigation::change(Class pageClass, const std::function<bool()>& work) {
    const std::vector<OpenPage> before = pages_;
    bool isOpen = false;
    const Result<void> opened = attempt([&] { isOpen = work(); });
    if (isOpen) return true;
    if (!opened) complain(pageClass->name, " does not open: ", opened.error());
    pages_ = before;
    publish();
    return false;
}

bool Navigation::openByWay(Class first, const std::string& title, Class target) {
    return change(target, [&] {
        auto page = make(first, title, nullptr);
        if (!page) return false;
        push(std::move(page), first);
        return take(wayFromFirst(target));
    });
}

void Navigation::goTo(Class target) {
    if (!target || pages_.empty() || pages_.back().pageClass == target) return;
    if (pages_.back().controller->presentedViewController()) return;
    if (pages_.front().pageClass == target) {
        pages_.erase(pages_.begin() + 1, pages_.end());
        return appear(false);
    }
    if (auto way = wayFromFirst(target); !way.empty())
        change(target, [&] { return take(std::move(way)); });
    else
        open(target, target->name);
}

std::vector<Step> Navigation::wayFromFirst(Class target) {
    const OpenPage& first = pages_.front();
    return wayTo({first.pageClass, first.controller}, target, std::bind_front(&Navigation::make, this));
}

/// Puts the pages of a way upon the first page, in place of what is there. False when there are none.
bool Navigation::take(std::vector<Step> way) {
    if (way.empty()) return false;
    pages_.erase(pages_.begin() + 1, pages_.end());
    for (Step& step : way)
        push(std::move(step.page), step.pageClass);
    dispatch_wait_until_idle(kTimeForAnswer); // as for any page that opens
    // A covered page appears when the user goes back to it. Until then, this is what slides in from below.
    for (OpenPage& page : pages_)
        if (!page.snapshot && &page != &pages_.back()) look(page);
    appear(false);
    return true;
}

bool Navigation::run(const std::function<void(Navigation&)>& work) {
    Result<void> done = attempt([&] { work(*this); });
    const bool sound = bool(done);
    if (!sound) pending_.reset(); // its page has failed
    while (!done && !pages_.empty()) {
        complain(pages_.back().pageClass->name, " fails: ", done.error());
        if (pages_.size() == 1) {
            publish(); // so that it is not shown as still being opened
            break;
        }
        pages_.pop_back();
        done = attempt([this] { appear(true); });
    }
    return sound;
}

void Navigation::back(std::uint64_t id) {
    const OpenPage* page = pageOnTop(id);
    if (!page || pages_.size() < 2 || page->controller->presentedViewController()) return;
    listen_(page->pageClass->name, std::nullopt);
    pages_.pop_back();
    appear(true);
}

/// False when the page on top stays: it presents something.
bool Navigation::goBack() {
    const std::size_t depth = pages_.size();
    back(pages_.back().id);
    return pages_.size() < depth;
}

void Navigation::reload(std::uint64_t id) {
    const OpenPage* page = pageOnTop(id);
    if (!page || page->controller->presentedViewController()) return;
    const Class pageClass = page->pageClass;
    const std::string title = page->snapshot->title;
    const PSSpecifierRef row = page->controller->specifier();
    change(pageClass, [&] {
        auto anew = make(pageClass, title, row);
        if (!anew) return false;
        pages_.pop_back();
        push(std::move(anew), pageClass);
        // A view asks only when it is made, and has what was answered before. So one is made to ask, and another one to show.
        if (hosting_.contains(pageClass)) makeView(pages_.back(), false);
        waitForMessages();
        appear(false);
        return true;
    });
}

} // namespace settings
