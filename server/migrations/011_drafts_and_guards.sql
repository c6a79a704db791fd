-- spoilt: something that belongs to the draft was refused. Its closing call drops it: a client that does not look at the answers
-- to its lines would take the document for whole.
ALTER TABLE draft ADD COLUMN spoilt {int} NOT NULL DEFAULT 0 CHECK (spoilt IN (0, 1));
-- The stock of an inbound line finds its line by what both say. Texts are too long for an index.
CREATE INDEX draft_line_like ON draft_line (company, draft, product, price, amount, id);

-- The ledger only grows. Whoever makes the table anew drops the triggers first.
-- sqlite: CREATE TRIGGER movement_unchanged BEFORE UPDATE ON movement
-- sqlite: BEGIN SELECT RAISE(ABORT, 'a movement is never changed'); END;
-- sqlite: CREATE TRIGGER movement_kept BEFORE DELETE ON movement
-- sqlite: BEGIN SELECT RAISE(ABORT, 'a movement is never deleted'); END;
-- postgresql: CREATE FUNCTION keep_movements() RETURNS trigger LANGUAGE plpgsql AS
-- postgresql:     'BEGIN RAISE EXCEPTION ''a movement is never changed or deleted'' USING ERRCODE = ''check_violation''; END';
-- postgresql: CREATE TRIGGER movement_kept BEFORE UPDATE OR DELETE OR TRUNCATE ON movement
-- postgresql:     FOR EACH STATEMENT EXECUTE FUNCTION keep_movements();
