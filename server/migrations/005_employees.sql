-- Employees. State 1 is live, 2 retired. The flags say 1 for yes and 2 for no, as the client does.
CREATE TABLE employee (
    company {int} NOT NULL REFERENCES company (id),
    id {int} NOT NULL PRIMARY KEY CHECK (id > 1000),
    state {int} NOT NULL DEFAULT 1 CHECK (state IN (1, 2)),
    added_at {int} NOT NULL,
    added_by {int} NOT NULL,
    retired_at {int},
    name {text} NOT NULL CHECK (length(name) BETWEEN 1 AND 200),
    jobnum {text} NOT NULL CHECK (length(jobnum) BETWEEN 1 AND 200),
    mobile {text} NOT NULL CHECK (length(mobile) <= 40),
    address {text} NOT NULL CHECK (length(address) <= 1000),
    idnum {text} NOT NULL CHECK (length(idnum) <= 40),
    remark {text} NOT NULL CHECK (length(remark) <= 1000),
    isdefault {int} NOT NULL CHECK (isdefault IN (1, 2)),
    dimission {int} NOT NULL CHECK (dimission IN (1, 2)),
    name_folded {text} NOT NULL,
    jobnum_folded {text} NOT NULL,
    idnum_folded {text} NOT NULL,
    UNIQUE (company, id),
    FOREIGN KEY (company, added_by) REFERENCES app_user (company, id),
    CHECK ((state = 2) = (retired_at IS NOT NULL))
) {strict};
CREATE UNIQUE INDEX employee_jobnum ON employee (company, jobnum_folded) WHERE state = 1;
CREATE UNIQUE INDEX employee_idnum ON employee (company, idnum_folded) WHERE state = 1 AND idnum_folded <> '';
CREATE UNIQUE INDEX employee_mobile ON employee (company, mobile) WHERE state = 1 AND mobile <> '';
CREATE UNIQUE INDEX employee_default ON employee (company) WHERE state = 1 AND isdefault = 1;
CREATE INDEX employee_page ON employee (company, state, id);
-- A document may name an employee by the low byte of his id.
CREATE INDEX employee_low_byte ON employee (company, (id % 256)) WHERE state = 1;
