#include "foundation/afunctionext.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace
{

class Session
{
public:
    virtual ~Session() = default;

    void on_done() { log += "done "; }
    void on_data(const std::string& text, int* length)
    {
        log += text + " ";
        *length = static_cast<int>(text.size());
    }
    void on_many(int a, int b, int c, int d)
    {
        log += std::to_string(a * 1000 + b * 100 + c * 10 + d);
    }
    virtual void on_event(int) { log += "session "; }

    std::string log;
};

class Special : public Session
{
public:
    void on_event(int) override { log += "special "; }
};

TEST(AFunctionExt, DelegateCallsTheMemberOfItsObject)
{
    Session first;
    Session second;
    const auto on_first = bind<&Session::on_done>(&first);
    const auto on_second = bind<&Session::on_done>(&second);
    EXPECT_EQ(on_first.kind, 4u);
    on_first();
    on_first();
    on_second();
    EXPECT_EQ(first.log, "done done ");
    EXPECT_EQ(second.log, "done ");
}

TEST(AFunctionExt, ArgumentsArePassedAndResultsComeThroughPointers)
{
    Session session;
    const AFunction<const std::string&, int*> delegate = bind<&Session::on_data>(&session);
    int length = 0;
    delegate("twelve", &length);
    EXPECT_EQ(length, 6);
    EXPECT_EQ(session.log, "twelve ");
    bind<&Session::on_many> (&session)(1, 2, 3, 4);
    EXPECT_EQ(session.log, "twelve 1234");
}

TEST(AFunctionExt, VirtualMembersAreCalledAsTheObjectHasThem)
{
    Special special;
    bind<&Session::on_event> (&special)(0);
    EXPECT_EQ(special.log, "special ");
}

struct Left {
    virtual ~Left() = default;
    int left = 1;
};

struct Right {
    virtual ~Right() = default;
    void add(int value) { right += value; }
    int right = 2;
};

struct Both : Left, Right {
};

TEST(AFunctionExt, MemberOfASecondBaseFindsItsPart)
{
    Both both;
    bind<&Right::add> (&both)(40);
    EXPECT_EQ(both.right, 42);
    EXPECT_EQ(both.left, 1);
}

struct Sink {
    void take(std::vector<int> values) { taken = values.data(); }
    const int* taken = nullptr;
};

TEST(AFunctionExt, ArgumentByValueIsMovedOnAndNotCopied)
{
    Sink sink;
    std::vector<int> values(100, 7);
    const int* data = values.data();
    bind<&Sink::take> (&sink)(std::move(values));
    EXPECT_EQ(sink.taken, data);
}

} // namespace
