#include <rapidcheck.h>

#include <algorithm>
#include <map>

#include "domain/check.h"
#include "domain/fold.h"
#include "domain/staff_scene.h"

namespace tavrok::domain {
namespace {

class staff_model : public test::on_staff {};
ON_EVERY_ENGINE(staff_model);

/** Few values, so that employees meet. */
std::string some_text() {
    return *rc::gen::element<std::string>("", "a", "A", "ab", "Ж", "ж", "%", "_", "仓", "é", "É", "a%b",
                                          "\\");
}

employee random_employee() {
    employee made;
    made.name = *rc::gen::element<std::string>("顾", "裴 a", "裴 A_", "", "%祝");
    made.jobnum = some_text();
    made.idnum = some_text();
    made.mobile = *rc::gen::element<std::string>("", "15400005001", "15400005002", "154-0");
    made.remark = some_text();
    made.isdefault = *rc::gen::element(1, 2);
    made.dimission = *rc::gen::element(1, 2);
    return made;
}

warehouse random_warehouse() {
    warehouse made;
    made.name = *rc::gen::element<std::string>("甲仓", "A 仓", "a_仓", "%", "");
    made.phone = some_text();
    made.mobile = *rc::gen::element<std::string>("", "15400007001", "1");
    made.isdefault = *rc::gen::element(0, 1);
    return made;
}

bool holds(const std::string& where, const std::string& what) {
    return fold(where).find(fold(what)) != std::string::npos;
}

bool same_mark(const std::string& one, const std::string& other) {
    return !one.empty() && fold(one) == fold(other);
}

/** One company as plain maps and loops have it, side by side with the real one. */
class company {
public:
    company(test::staff_scene& in, principal who) : m_in(in), m_who(std::move(who)) {}

    void step() {
        switch (*rc::gen::inRange(0, 10)) {
            case 0:
            case 1:
            case 2:
                return hire(0);
            case 3:
            case 4:
                return hire(any(m_staff));
            case 5:
                return dismiss(any(m_staff));
            case 6:
            case 7:
                return open(0);
            case 8:
                return open(any(m_houses));
            default:
                return close(any(m_houses));
        }
    }

    void compare() {
        compare_employees();
        compare_warehouses();
    }

private:
    /** An id of a live one or, at times, of one that is not there. */
    template <typename records>
    static std::int64_t any(const records& all) {
        if (all.empty() || *rc::gen::inRange(0, 8) == 0) return 4711;
        return std::next(all.begin(), *rc::gen::inRange(0, static_cast<int>(all.size())))->first;
    }

    template <typename what_t>
    static bool done(what_t what) {
        try {
            what();
            return true;
        } catch (const refused&) {
            return false;
        }
    }

    bool fits(const employee& what) const {
        if (what.name.empty() || what.jobnum.empty()) return false;
        return std::none_of(m_staff.begin(), m_staff.end(), [&](const auto& one) {
            return one.first != what.id &&
                   (same_mark(one.second.jobnum, what.jobnum) || same_mark(one.second.idnum, what.idnum) ||
                    same_mark(one.second.mobile, what.mobile));
        });
    }

    /** Adds one (id 0) or writes over one. */
    void hire(std::int64_t id) {
        auto what = random_employee();
        what.id = id;
        const bool may = fits(what) && (id == 0 || m_staff.contains(id));
        const bool did = done([&] {
            if (id == 0) {
                what.id = m_in.hire(m_who, what);
            } else {
                m_in.edit(m_who, what);
            }
        });
        RC_ASSERT(did == may);
        if (!did) return;
        if (what.isdefault == 1)
            for (auto& one : m_staff)
                one.second.isdefault = 2;
        m_staff[what.id] = what;
        m_names[what.id] = what.name;
    }

    void dismiss(std::int64_t id) {
        RC_ASSERT(done([&] { m_in.dismiss(m_who, id); }) == m_staff.contains(id));
        m_staff.erase(id);
    }

    void open(std::int64_t id) {
        auto what = random_warehouse();
        what.id = id;
        const auto known = m_houses.find(id);
        auto keeper = any(m_staff);
        if (known != m_houses.end() && *rc::gen::arbitrary<bool>()) keeper = known->second.keeper;
        const bool kept = known != m_houses.end() && known->second.keeper == keeper;
        const bool may =
            !what.name.empty() && (kept || m_staff.contains(keeper)) && (id == 0 || known != m_houses.end());
        const bool did = done([&] {
            if (id == 0) {
                what.id = m_in.open(m_who, what, std::to_string(keeper));
            } else {
                m_in.edit(m_who, what, std::to_string(keeper));
            }
        });
        RC_ASSERT(did == may);
        if (!did) return;
        if (what.isdefault == 1)
            for (auto& one : m_houses)
                one.second.isdefault = 0;
        what.keeper = keeper;
        m_houses[what.id] = what;
    }

    void close(std::int64_t id) {
        RC_ASSERT(done([&] { m_in.close(m_who, id); }) == m_houses.contains(id));
        m_houses.erase(id);
    }

    /** Turns all pages over: newest first, each once, no hole, and every page as long as it should be. */
    template <typename lister>
    static auto turn_over(const std::vector<std::int64_t>& wanted, lister list) {
        const auto size = *rc::gen::inRange<std::int64_t>(1, 6);
        auto page = list(1, size);
        auto all = page.list;
        for (std::int64_t num = 2; num <= page.page_count; ++num) {
            page = list(num, size);
            all.insert(all.end(), page.list.begin(), page.list.end());
        }
        RC_ASSERT(page.total == static_cast<std::int64_t>(wanted.size()));
        RC_ASSERT(page.page_count == (page.total + size - 1) / size);
        std::vector<std::int64_t> got;
        for (const auto& one : all)
            got.push_back(one.id);
        RC_ASSERT(got == std::vector<std::int64_t>(wanted.rbegin(), wanted.rend()));
        return all;
    }

    void compare_employees() {
        employee_search search;
        if (*rc::gen::inRange(0, 2) == 0) search.name = *rc::gen::element<std::string>("裴", "a", "%", "_");
        if (*rc::gen::inRange(0, 3) == 0) search.jobnum = some_text();
        if (*rc::gen::inRange(0, 3) == 0) search.idnum = some_text();
        if (*rc::gen::inRange(0, 3) == 0) search.mobile = *rc::gen::element<std::string>("5001", "154", "-");
        std::vector<std::int64_t> wanted;
        for (const auto& [id, one] : m_staff) {
            if (holds(one.name, search.name) && holds(one.jobnum, search.jobnum) &&
                holds(one.idnum, search.idnum) && holds(one.mobile, search.mobile))
                wanted.push_back(id);
        }
        const auto shown = turn_over(wanted, [&](std::int64_t num, std::int64_t size) {
            return m_in.employees(m_who, search, num, size);
        });
        for (const auto& one : shown) {
            const auto& own = m_staff.at(one.id);
            RC_ASSERT(one.name == own.name && one.jobnum == own.jobnum && one.idnum == own.idnum);
            RC_ASSERT(one.mobile == own.mobile && one.remark == own.remark);
            RC_ASSERT(one.isdefault == own.isdefault && one.dimission == own.dimission);
        }
    }

    void compare_warehouses() {
        warehouse_search search;
        std::int64_t keeper = 0;
        if (*rc::gen::inRange(0, 3) == 0) search.name = *rc::gen::element<std::string>("仓", "a", "%");
        if (*rc::gen::inRange(0, 3) == 0) search.phone = some_text();
        if (*rc::gen::inRange(0, 3) == 0) search.mobile = "7001";
        if (*rc::gen::inRange(0, 3) == 0) search.keeper = std::to_string(keeper = any(m_staff));
        std::vector<std::int64_t> wanted;
        for (const auto& [id, one] : m_houses) {
            if (holds(one.name, search.name) && holds(one.phone, search.phone) &&
                holds(one.mobile, search.mobile) && (keeper == 0 || one.keeper == keeper))
                wanted.push_back(id);
        }
        const auto shown = turn_over(wanted, [&](std::int64_t num, std::int64_t size) {
            return m_in.warehouses(m_who, search, num, size);
        });
        for (const auto& one : shown) {
            const auto& own = m_houses.at(one.id);
            RC_ASSERT(one.name == own.name && one.phone == own.phone && one.mobile == own.mobile);
            RC_ASSERT(one.isdefault == own.isdefault && one.keeper == own.keeper);
            RC_ASSERT(one.keeper_name == m_names.at(one.keeper));
        }
    }

    test::staff_scene& m_in;
    principal m_who;
    std::map<std::int64_t, employee> m_staff;
    std::map<std::int64_t, std::string> m_names; // of everybody who ever was
    std::map<std::int64_t, warehouse> m_houses;
};

TEST_P(staff_model, any_run_of_changes_leaves_what_an_oracle_expects) {
    int run = 0;
    EXPECT_TRUE(rc::check([&] {
        // two companies side by side in every run; fresh ones, so that runs do not meet
        std::vector<company> both;
        for (int i = 0; i < 2; ++i)
            both.emplace_back(*in, in->another("公司 " + std::to_string(++run)));
        const auto steps = *rc::gen::inRange(0, 40);
        for (int i = 0; i < steps; ++i) {
            auto& one = both[static_cast<std::size_t>(*rc::gen::inRange(0, 2))];
            one.step();
            if (i % 5 == 0) one.compare();
        }
        for (auto& one : both)
            one.compare();
    }));
    for (const auto& one : in->read([](store::connection& with) { return check(with); }))
        ADD_FAILURE() << one.text;
}

} // namespace
} // namespace tavrok::domain
