-- What sign-up and the administration of users need.

-- A company signs up under a name that no other has. The service folds the names that stand already, here and below, when
-- it opens the database: no database folds as it does. Empty: not yet, or an older company has the name.
ALTER TABLE company ADD COLUMN name_folded {text} NOT NULL DEFAULT '';
ALTER TABLE company ADD COLUMN phone {text} NOT NULL DEFAULT '' CHECK (length(phone) <= 200);
ALTER TABLE company ADD COLUMN address {text} NOT NULL DEFAULT '' CHECK (length(address) <= 1000);
CREATE UNIQUE INDEX company_name ON company (name_folded) WHERE name_folded <> '';

-- A user who was deleted keeps his row, as documents go on naming him; his name, mobile and e-mail are free again.
-- The folded name of such a row is no name that anybody can have.
ALTER TABLE app_user ADD COLUMN realname_folded {text} NOT NULL DEFAULT '';
ALTER TABLE app_user ADD COLUMN removed_at {int};
CREATE INDEX app_user_page ON app_user (company, removed_at, id);

-- The picture that a visitor has to read before he signs up, one for a visitor's cookie. The request that signed up with
-- it is kept as a hash with its time: used_at 0 is a picture that waits, and a used one opens nothing any more. fitted_for
-- is the hash of the last sign-up that had read it.
CREATE TABLE captcha (
    visitor_hash {text} NOT NULL PRIMARY KEY CHECK (length(visitor_hash) = 64),
    code_hash {text} NOT NULL CHECK (length(code_hash) = 64),
    made_at {int} NOT NULL,
    attempts {int} NOT NULL DEFAULT 0 CHECK (attempts >= 0),
    used_for {text} NOT NULL DEFAULT '',
    used_at {int} NOT NULL DEFAULT 0,
    fitted_for {text} NOT NULL DEFAULT ''
) {strict};
CREATE INDEX captcha_age ON captcha (made_at);

-- The regular sweep looks for sessions that are too old and for those that nobody used for too long.
CREATE INDEX session_age ON session (created_at);
CREATE INDEX session_use ON session (last_used_at);

-- The last number given where the service gives the ids itself: menu rows that the operator adds, and employees, whose
-- low byte must be a character that can stand for them.
CREATE TABLE number_series (
    name {text} NOT NULL PRIMARY KEY,
    last {int} NOT NULL CHECK (last >= 1000)
) {strict};
INSERT INTO number_series (name, last) VALUES ('menu', 100000), ('employee', 1000);

-- How many rows of a list are live; changes in the transaction that changes them. No row: none.
CREATE TABLE list_counter (
    company {int} NOT NULL REFERENCES company (id),
    list {text} NOT NULL,
    live {int} NOT NULL CHECK (live >= 0),
    PRIMARY KEY (company, list)
) {strict};
INSERT INTO list_counter (company, list, live) SELECT company, 'user', count(*) FROM app_user GROUP BY company;

-- A grant goes with its menu row, also one that is given at the very moment in which the row is deleted.
CREATE TABLE user_grant_kept (
    company {int} NOT NULL,
    user_id {int} NOT NULL,
    menu_id {int} NOT NULL REFERENCES menu (id) ON DELETE CASCADE,
    PRIMARY KEY (company, user_id, menu_id),
    FOREIGN KEY (company, user_id) REFERENCES app_user (company, id)
) {strict};
INSERT INTO user_grant_kept (company, user_id, menu_id) SELECT company, user_id, menu_id FROM user_grant;
DROP TABLE user_grant;
ALTER TABLE user_grant_kept RENAME TO user_grant;
CREATE INDEX user_grant_menu ON user_grant (menu_id);

-- A page stands once in the menu and a right once on its page: else a right that was taken away would go on in a twin.
CREATE UNIQUE INDEX menu_page ON menu (action) WHERE real_level = 1;
CREATE UNIQUE INDEX menu_right ON menu (parent, action) WHERE real_level = 2;

-- A deed may concern two things: a grant concerns a user (object_id) and a menu row (detail).
ALTER TABLE audit ADD COLUMN detail {int} NOT NULL DEFAULT 0;
