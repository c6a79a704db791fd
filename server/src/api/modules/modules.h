#pragma once

#include "api/registry.h"
#include "api/services.h"

namespace tavrok::api {

/** Each adds the endpoints of one module. `with` outlives the registry. */
void add_version(registry& to, const services& with);
void add_login(registry& to, const services& with);
void add_wms(registry& to, const services& with);
void add_menu(registry& to, const services& with);
void add_permission(registry& to, const services& with);
void add_company(registry& to, const services& with);
void add_emp(registry& to, const services& with);
void add_warehouse(registry& to, const services& with);
/** wms_dept and wms_prodcate. */
void add_trees(registry& to, const services& with);
void add_product(registry& to, const services& with);
/** wms_instore and wms_instore_detail. */
void add_instore(registry& to, const services& with);
/** wms_outstore and wms_outstore_detail. */
void add_outstore(registry& to, const services& with);
void add_stock_detail(registry& to, const services& with);
/** wms_stock_taking and wms_stock_taking_detail. */
void add_stock_taking(registry& to, const services& with);
/** wms_stock_allot and wms_stock_allot_detail. */
void add_stock_allot(registry& to, const services& with);
void add_stock_summary(registry& to, const services& with);
void add_user_reg(registry& to, const services& with);
void add_user(registry& to, const services& with);

} // namespace tavrok::api
