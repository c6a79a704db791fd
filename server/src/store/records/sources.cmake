# What the database keeps: one file a record, paths relative to server/src/store.
set(WMSD_RECORD_SOURCES
    records/audit.cpp
    records/captchas.cpp
    records/companies.cpp
    records/employees.cpp
    records/listing.cpp
    records/live_rows.cpp
    records/login_failures.cpp
    records/menu.cpp
    records/partners.cpp
    records/products.cpp
    records/proofs.cpp
    records/repeats.cpp
    records/sessions.cpp
    records/trees.cpp
    records/users.cpp
    records/warehouses.cpp)
