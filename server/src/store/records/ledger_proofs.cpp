#include "store/records/ledger_proofs.h"

#include <span>

namespace tavrok::store {

namespace {

/** What must not be true of a row. */
struct fault {
    const char* rule;
    const char* when; // true of a row that breaks the promise; null is as good as false
    const char* words;
};

/** Rows and their faults: one statement, which gives the rows that have any. */
struct proof {
    const char* name;
    const char* table; // that the rows are of
    const char* from;  // the row is r
    const char* linked;
    std::span<const fault> faults;
};

// A CROSS JOIN tells SQLite where to begin: with the groups of an index, which it then need not keep.
// A plus before the columns of a grouping keeps it from walking an index that has them in part, row by row.
// Products are made of NUMERIC values: a damaged figure may be too large for a product of 64 bits.

constexpr const char* g_moved_stock =
    "(SELECT company, stock, sum(amount) AS amount, sum(value) AS value FROM movement "
    "GROUP BY company, stock) m CROSS JOIN stock r";
constexpr fault g_moved_stock_faults[] = {
    {"ledger", "r.on_hand <> m.amount", "has another quantity on hand than its movements"},
    {"ledger", "CAST(r.on_hand AS NUMERIC) * r.price <> m.value", "is worth another sum than its movements"},
};

constexpr const char* g_claimed_stock =
    "stock r LEFT JOIN (SELECT company, stock, sum(CASE WHEN use = 2 THEN 0 ELSE amount END) AS amount, "
    "sum(CASE WHEN use = 2 THEN 1 ELSE 0 END) AS holds, min(CASE WHEN use = 2 THEN user_id END) AS one, "
    "max(CASE WHEN use = 2 THEN user_id END) AS other FROM claim WHERE state = 1 GROUP BY company, stock) c "
    "ON c.company = r.company AND c.stock = r.id";
constexpr fault g_claimed_stock_faults[] = {
    {"ledger", "r.on_hand < 0", "has less than nothing on hand"},
    {"ledger", "r.listed <> CASE WHEN r.on_hand > 0 THEN 1 ELSE 0 END",
     "is listed with nothing on hand, or not listed with something"},
    {"claim", "r.claimed <> coalesce(c.amount, 0)", "tells another claimed quantity than its claims"},
    {"claim", "r.claimed < 0 OR r.claimed > r.on_hand", "has more claimed than is on hand"},
    {"claim", "r.holds <> coalesce(c.holds, 0)", "tells another number of holds than its claims"},
    {"claim", "r.holder <> coalesce(c.one, 0)", "tells another holder than its claims"},
    {"claim", "c.one <> c.other", "is held by more than one user"},
};

constexpr const char* g_made_stock =
    "(SELECT company, id, count(*) AS lines FROM (SELECT l.company, l.stock AS id FROM document_line l JOIN "
    "document d ON d.company = l.company AND d.id = l.document WHERE d.module = 1 UNION ALL SELECT company, "
    "stock_in FROM document_line WHERE stock_in IS NOT NULL) m GROUP BY company, id) r";
constexpr fault g_made_stock_faults[] = {
    {"ledger", "r.lines > 1", "was brought in by more than one line"},
};

constexpr fault g_claim_faults[] = {
    {"claim", "r.state NOT IN (1, 2, 3, 4)", "is in no known state"},
    {"claim", "r.state = 1 AND r.ended_at IS NOT NULL", "is active and has an end"},
    {"claim", "r.state <> 1 AND r.ended_at IS NULL", "has ended and does not say when"},
    {"claim", "r.amount < 0", "claims less than nothing"},
    {"claim", "r.use = 2 AND r.amount <> 0", "holds its row as a whole and claims a quantity"},
    {"claim", "lower(substr(r.token, 1, 1)) = upper(substr(r.token, 1, 1))",
     "has a token that does not begin with a letter"},
};

constexpr const char* g_document =
    "document r LEFT JOIN (SELECT company, document, sum(total) AS total, sum(amount) AS amount FROM "
    "document_line GROUP BY company, document) l ON l.company = r.company AND l.document = r.id";
constexpr fault g_document_faults[] = {
    {"document", "l.document IS NULL", "has no lines"},
    {"document", "r.total <> l.total", "tells another total than its lines"},
    {"document", "r.difference <> CASE WHEN r.module = 3 THEN l.amount ELSE 0 END",
     "tells another gain or loss than its lines"},
    {"document",
     "CASE WHEN r.module = 4 THEN 2 ELSE 0 END <> CASE WHEN r.warehouse_out IS NULL THEN 0 ELSE 1 END + "
     "CASE WHEN r.warehouse_in IS NULL THEN 0 ELSE 1 END",
     "is a transfer without two warehouses, or has some and is none"},
    {"document", "r.warehouse_out = r.warehouse_in", "is a transfer within a warehouse"},
    {"document", "r.state NOT IN (1, 2)", "is in no known state"},
    {"document", "r.state = 1 AND (r.deleted_at IS NOT NULL OR r.deleted_by IS NOT NULL)",
     "is live and tells who deleted it, or when"},
    {"document", "r.state = 2 AND (r.deleted_at IS NULL OR r.deleted_by IS NULL)",
     "is deleted and does not tell who did it, or when"},
};

constexpr const char* g_line =
    "document_line r LEFT JOIN document d ON d.company = r.company AND d.id = r.document "
    "LEFT JOIN stock s ON s.company = r.company AND s.id = r.stock "
    "LEFT JOIN stock i ON i.company = r.company AND i.id = r.stock_in";
constexpr fault g_line_faults[] = {
    {"reference", "d.id IS NULL", "names a row of document that is not there"},
    {"reference", "s.id IS NULL", "names a row of stock that is not there"},
    {"reference", "r.stock_in IS NOT NULL AND i.id IS NULL",
     "names a row of stock, its destination, that is not there"},
    {"document", "d.module <> 3 AND CAST(r.amount AS NUMERIC) * r.price <> r.total",
     "tells another total than amount times price"},
    {"document",
     "s.product <> r.product OR s.warehouse <> r.warehouse OR (d.module <> 4 AND s.place <> r.place)",
     "tells other goods, or another place, than its stock row"},
    {"document",
     "CASE WHEN d.module = 3 THEN 1 ELSE 0 END <> CASE WHEN r.sys_amount IS NULL THEN 0 ELSE 1 END",
     "was counted and is of no stocktaking, or the other way round"},
    {"document", "CASE WHEN d.module = 4 THEN 1 ELSE 0 END <> CASE WHEN r.stock_in IS NULL THEN 0 ELSE 1 END",
     "has a destination and is of no transfer, or the other way round"},
    {"document", "d.warehouse_out <> r.warehouse", "takes from another warehouse than its document"},
    {"document",
     "i.product <> r.product OR i.warehouse <> d.warehouse_in OR i.place <> r.place OR i.price <> s.price",
     "tells other goods, or another place, than the stock row that it made"},
    {"document", "d.module = 1 AND s.price <> r.price",
     "tells another price than the stock row that it made"},
};

// of a line on a row: a transfer's moves two
constexpr const char* g_moved_line =
    "(SELECT company, line, stock, count(*) AS moves, min(amount) AS least, max(amount) AS most, sum(amount) "
    "AS amount FROM movement GROUP BY company, line, stock) m CROSS JOIN document_line r CROSS JOIN document "
    "d";
constexpr fault g_moved_line_faults[] = {
    {"ledger", "m.moves <> CASE WHEN d.state = 2 THEN 2 ELSE 1 END",
     "has more or fewer movements than it must have"},
    {"ledger",
     "m.amount <> CASE WHEN d.state = 2 THEN 0 WHEN d.module = 2 OR (d.module = 4 AND m.stock = r.stock) "
     "THEN -r.amount ELSE r.amount END",
     "moved another quantity than it tells"},
    {"ledger", "d.state = 2 AND (m.least <> -abs(r.amount) OR m.most <> abs(r.amount))",
     "was not undone by a contrary movement"},
};

constexpr const char* g_movement =
    "movement r LEFT JOIN document_line l ON l.company = r.company AND l.id = r.line "
    "LEFT JOIN stock s ON s.company = r.company AND s.id = r.stock";
constexpr fault g_movement_faults[] = {
    {"reference", "l.id IS NULL", "names a row of document_line that is not there"},
    {"reference", "s.id IS NULL", "names a row of stock that is not there"},
    {"ledger", "r.document <> l.document", "names another document than its line"},
    {"ledger", "r.stock <> l.stock AND r.stock <> coalesce(l.stock_in, 0)",
     "names another stock row than its line"},
    {"ledger", "CAST(r.amount AS NUMERIC) * s.price <> r.value", "has another value than its quantity"},
};

constexpr const char* g_draft =
    "draft r LEFT JOIN (SELECT company, draft, count(*) AS lines FROM draft_line GROUP BY company, draft) l "
    "ON l.company = r.company AND l.draft = r.id";
constexpr fault g_draft_faults[] = {
    {"draft",
     "r.lines <> CASE WHEN r.document IS NULL THEN coalesce(l.lines, 0) ELSE (SELECT count(*) FROM "
     "document_line x WHERE x.company = r.company AND x.document = r.document) END",
     "tells another number of lines than it has"},
};

// In two parts of about the same length, for two connections.
const proof g_stock_proofs[] = {
    {"moved_stock", "stock", g_moved_stock, "r.company = m.company AND r.id = m.stock", g_moved_stock_faults},
    {"claimed_stock", "stock", g_claimed_stock, "1 = 1", g_claimed_stock_faults},
    {"made_stock", "stock", g_made_stock, "1 = 1", g_made_stock_faults},
    {"claim", "claim", "claim r", "1 = 1", g_claim_faults},
    {"draft", "draft", g_draft, "1 = 1", g_draft_faults},
};
const proof g_document_proofs[] = {
    {"document", "document", g_document, "1 = 1", g_document_faults},
    {"line", "document_line", g_line, "1 = 1", g_line_faults},
    {"moved_line", "document_line", g_moved_line,
     "r.company = m.company AND r.id = m.line AND d.company = r.company AND d.id = r.document",
     g_moved_line_faults},
};
const proof g_movements{"movement", "movement", g_movement, "1 = 1", g_movement_faults};

statement search_of(const proof& one) {
    std::string flags;
    std::string any;
    for (const auto& wrong : one.faults) {
        flags += std::string(", CASE WHEN ") + wrong.when + " THEN 1 ELSE 0 END";
        any += std::string(any.empty() ? "(" : " OR (") + wrong.when + ")";
    }
    return {std::string("proof_") + one.name, "SELECT r.company, r.id" + flags + " FROM " + one.from +
                                                  " WHERE " + one.linked + " AND (" + any + ")"};
}

/** Rows of a table that must have moved where `when` holds: by movements for which `by` holds. */
struct mover {
    const char* when;
    const char* by;
    const char* words;
};
/** A table with the number of its rows that must have moved, and the columns of the movements that tell them
 * apart. */
struct moved_table {
    const char* table;
    const char* rows;
    const char* named;
    std::span<const mover> movers;
};
constexpr mover g_moving_stock[] = {{"1 = 1", "m.stock = r.id", "has no movements"}};
constexpr mover g_moving_lines[] = {
    {"1 = 1", "m.line = r.id AND m.stock = r.stock", "has no movements"},
    {"r.stock_in IS NOT NULL", "m.line = r.id AND m.stock = r.stock_in",
     "has no movements at its destination"},
};
constexpr moved_table g_moved_tables[] = {
    {"stock", "count(*)", "stock", g_moving_stock},
    {"document_line", "count(*) + count(stock_in)", "line, stock", g_moving_lines},
};

std::int64_t number(connection& with, const statement& what) {
    std::int64_t found = 0;
    with.query(what, {}, [&](const row& one) { found = one.integer(0); });
    return found;
}

/** Gives whether nothing was found. */
bool prove(connection& with, const proof& one, const promise_reader& each) {
    bool sound = true;
    with.query(search_of(one), {}, [&](const row& found) {
        sound = false;
        int column = 2;
        for (const auto& wrong : one.faults) {
            if (found.integer(column++) == 0) continue;
            each({wrong.rule, one.table, found.integer(0), found.integer(1), wrong.words});
        }
    });
    return sound;
}

/** `all_there`: every movement names a row that is there. Then as many named ones as there are rows mean that
 * none is left out; only otherwise is each of them looked for, which takes much longer. */
void each_unmoved(connection& with, const moved_table& what, bool all_there, const promise_reader& each) {
    const std::string table = what.table;
    const statement rows{"proof_rows_" + table, std::string("SELECT ") + what.rows + " FROM " + table};
    const statement named{
        "proof_named_" + table,
        std::string("SELECT count(*) FROM (SELECT DISTINCT company, ") + what.named + " FROM movement) m"};
    if (all_there && number(with, rows) == number(with, named)) return;
    int part = 0;
    for (const auto& one : what.movers) {
        const statement search{
            "proof_unmoved_" + table + std::to_string(++part),
            "SELECT r.company, r.id FROM " + table + " r WHERE " + one.when +
                " AND NOT EXISTS (SELECT 1 FROM movement m WHERE m.company = r.company AND " + one.by + ")"};
        with.query(search, {}, [&](const row& found) {
            each({"ledger", table, found.integer(0), found.integer(1), one.words});
        });
    }
}

const statement g_heads{
    "proof_document_heads",
    "SELECT d.company, d.id, d.module, d.type, coalesce(d.sn, ''), d.added_at, d.partner, p.type, d.has_dept "
    "FROM document d LEFT JOIN partner p ON p.company = d.company AND p.id = d.partner "
    "ORDER BY d.company, d.id"};
const statement g_counted{
    "proof_counted_lines",
    "SELECT company, id, amount, price, total, sys_amount FROM document_line WHERE sys_amount IS NOT NULL"};
const statement g_series{"proof_number_series",
                         "SELECT company, kind, day, last FROM document_number ORDER BY company, kind, day"};

} // namespace

void each_broken_stock(connection& with, const promise_reader& each) {
    for (const auto& one : g_stock_proofs)
        prove(with, one, each);
}

void each_broken_document(connection& with, const promise_reader& each) {
    for (const auto& one : g_document_proofs)
        prove(with, one, each);
    const bool sound = prove(with, g_movements, each);
    for (const auto& one : g_moved_tables)
        each_unmoved(with, one, sound, each);
}

void each_document_head(connection& with, const std::function<void(const document_head&)>& each) {
    with.query(g_heads, {}, [&](const row& one) {
        each({one.integer(0), one.integer(1), one.integer(2), one.integer(3), std::string(one.text(4)),
              one.integer(5), !one.null(6), one.null(7) ? std::nullopt : std::optional(one.integer(7)),
              one.integer(8) != 0});
    });
}

void each_counted_line(connection& with, const std::function<void(const counted_line&)>& each) {
    with.query(g_counted, {}, [&](const row& one) {
        each(
            {one.integer(0), one.integer(1), one.integer(2), one.integer(3), one.integer(4), one.integer(5)});
    });
}

void each_number_series(connection& with, const std::function<void(const number_series&)>& each) {
    with.query(g_series, {}, [&](const row& one) {
        each({one.integer(0), std::string(one.text(1)), one.integer(2), one.integer(3)});
    });
}

} // namespace tavrok::store
