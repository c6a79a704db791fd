-- The summary asks of every product whether something on hand came in between two moments: from this index alone. It takes
-- the place of one that held less and was asked for less.
DROP INDEX stock_product;
CREATE INDEX stock_product ON stock (company, listed, product, added_at);
