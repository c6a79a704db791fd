#pragma once

#include <memory>
#include <string>

#include "domain/employees.h"
#include "domain/refused.h"
#include "domain/scene.h"
#include "domain/warehouses.h"

namespace tavrok::test {

/** An employee with name and job number, and the rest empty. */
domain::employee some_employee(const std::string& jobnum, const std::string& name = "顾念慈");
/** An employee and a warehouse with every text filled. */
domain::employee full_employee(const std::string& jobnum);
domain::warehouse full_warehouse(const std::string& name);
domain::warehouse some_warehouse(const std::string& name);

/** The letter, as a form carries it. */
std::string utf8(unsigned letter);

/** A scene with calls of the staff rules, each in a transaction of its own. */
class staff_scene : public scene {
public:
    explicit staff_scene(const std::string& engine);

    domain::principal chief; /**< administrator of the first company */
    /** The administrator of a further company. */
    domain::principal another(const std::string& name);

    std::int64_t hire(const domain::principal& who, const domain::employee& what, std::int64_t now = g_now);
    void edit(const domain::principal& who, const domain::employee& what);
    void dismiss(const domain::principal& who, std::int64_t id);
    domain::employee_page employees(const domain::principal& who, const domain::employee_search& search = {},
                                    std::int64_t num = 1, std::int64_t size = 200);
    /** The employee as the list shows him; fails the test when it does not. */
    domain::employee employee(const domain::principal& who, std::int64_t id);

    std::int64_t open(const domain::principal& who, const domain::warehouse& what, const std::string& keeper,
                      std::int64_t now = g_now);
    void edit(const domain::principal& who, const domain::warehouse& what, const std::string& keeper);
    void close(const domain::principal& who, std::int64_t id);
    domain::warehouse_page warehouses(const domain::principal& who,
                                      const domain::warehouse_search& search = {}, std::int64_t num = 1,
                                      std::int64_t size = 200);
    domain::warehouse warehouse(const domain::principal& who, std::int64_t id);

    /** The next employee gets the first id after `last` that an employee may have. */
    void continue_ids_after(std::int64_t last);
    std::int64_t audited(const std::string& what);
    std::int64_t version();
    domain::count_cache counts{4096}; // small, so that it forgets within a run
};

/** A staff_scene on each engine. */
class on_staff : public on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (!IsSkipped()) in = std::make_unique<staff_scene>(GetParam());
    }
    std::unique_ptr<staff_scene> in;
};

} // namespace tavrok::test
