-- The order-entry example: customers and their orders. Dates are ISO text, times "HH:MM:SS".
CREATE TABLE customers (
  id   INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE
);
CREATE TABLE orders (
  id            INTEGER PRIMARY KEY AUTOINCREMENT,
  customer_ref  TEXT NOT NULL,
  customer_id   INTEGER NOT NULL REFERENCES customers(id),
  order_date    TEXT,
  delivery_time TEXT,
  quantity      REAL NOT NULL CHECK (quantity > 0),
  unit_price    REAL NOT NULL CHECK (unit_price >= 0),
  paid          INTEGER NOT NULL DEFAULT 0,
  notes         TEXT
);
INSERT INTO customers (id, name) VALUES
  (101, 'Acme Tools Ltd'),
  (102, 'Baker & Sons'),
  (103, 'Crane Logistics'),
  (104, 'Delta Print Shop'),
  (105, 'Evergreen Garden Centre');
INSERT INTO orders (customer_ref, customer_id, order_date, delivery_time, quantity, unit_price, paid, notes) VALUES
  ('PO-2291', 101, date('now', '-12 days'), '09:30:00', 40, 12.5, 1, 'Deliver to the loading bay.'),
  ('PO-2304', 103, date('now', '-9 days'), '14:00:00', 5, 249.0, 0, ''),
  ('BS/118', 102, date('now', '-6 days'), '07:15:00', 120, 0.85, 1, 'Flour sacks, 25 kg each.' || char(13) || char(10) || 'Call before delivery.'),
  ('DPS-77', 104, date('now', '-2 days'), NULL, 2, 1899.99, 0, 'Second printer for the back office.'),
  ('EGC-1045', 105, date('now'), '11:45:00', 300, 3.2, 0, NULL);
