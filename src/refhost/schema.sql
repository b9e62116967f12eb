-- Customer database of the reference host. A later version only adds tables, columns,
-- indexes and sequences here: an older file is brought up to date by comparison on open.
-- Created on first open; the version is kept in PRAGMA user_version (last statement).
-- Declared column types carry the field metadata the component sees: VARCHAR(n) is text of
-- size n, NUMERIC(p,s) exact numeric, MONEY currency, BIT Boolean, DATETIME ISO text.

CREATE TABLE kiv_system_parm (
  system_id INTEGER PRIMARY KEY,
  country_id VARCHAR(10),
  fiscal_year INTEGER,
  resort_name VARCHAR(60)
);

CREATE TABLE kiv_sequence (
  sequence_name VARCHAR(40) PRIMARY KEY,
  last_no INTEGER NOT NULL DEFAULT 0
);

-- Lists
CREATE TABLE kiv_country (Country_ID VARCHAR(10) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_address_type (address_type VARCHAR(20) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_customer_kind (customer_kind VARCHAR(20) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_customer_level (Customer_Level_ID VARCHAR(20) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_guest_ability (guest_ability VARCHAR(10) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_guest_height (
  guest_height_range SMALLINT PRIMARY KEY, Description VARCHAR(60), is_default BIT NOT NULL DEFAULT 0);
CREATE TABLE kiv_guest_weight (
  guest_weight_range SMALLINT PRIMARY KEY, Description VARCHAR(60), is_default BIT NOT NULL DEFAULT 0);
CREATE TABLE kiv_relation (rel_type_id VARCHAR(20) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_pay_method (pay_method_id VARCHAR(10) PRIMARY KEY, Description VARCHAR(60));

CREATE TABLE kiv_zip_code (
  zip VARCHAR(15) PRIMARY KEY,
  City VARCHAR(40),
  State VARCHAR(20),
  county VARCHAR(40),
  Country_ID VARCHAR(10),
  area_code VARCHAR(5)
);

-- Customers. Name and company texts compare without regard to case so that their indexes
-- serve prefix searches typed in any case.
CREATE TABLE kiv_customer (
  customer_no INTEGER PRIMARY KEY,
  full_name VARCHAR(100) COLLATE NOCASE,
  first_name VARCHAR(40) COLLATE NOCASE,
  last_name VARCHAR(50) COLLATE NOCASE,
  company_name VARCHAR(80) COLLATE NOCASE,
  customer_type CHAR(1) NOT NULL DEFAULT 'P',
  customer_kind VARCHAR(20),
  Gender CHAR(1),
  Zip VARCHAR(15) COLLATE NOCASE,
  account_id VARCHAR(20),
  status_id VARCHAR(10),
  comment_note TEXT,
  DOB DATETIME,
  Locked BIT,
  date_of_release DATETIME,
  has_image BIT NOT NULL DEFAULT 0,
  discount_percentage FLOAT,
  commission_percentage FLOAT,
  household_primary BIT NOT NULL DEFAULT 0,
  household_no INTEGER,
  Customer_Level_ID VARCHAR(20),
  do_not_mail BIT NOT NULL DEFAULT 0,
  EMail VARCHAR(80),
  work_phone VARCHAR(20),
  cell_phone VARCHAR(20),
  Occupation VARCHAR(40),
  wedding_anniversary DATETIME,
  preloaded SMALLINT NOT NULL DEFAULT 0,
  has_willcall BIT NOT NULL DEFAULT 0,
  has_reservation BIT NOT NULL DEFAULT 0,
  has_so BIT NOT NULL DEFAULT 0,
  has_club BIT NOT NULL DEFAULT 0,
  has_relationship BIT NOT NULL DEFAULT 0,
  created_by VARCHAR(20),
  create_date DATETIME,
  modified_by VARCHAR(20),
  modified_date DATETIME
);
CREATE INDEX ix_customer_last_name ON kiv_customer (last_name, first_name, customer_type);
CREATE INDEX ix_customer_first_name ON kiv_customer (first_name, customer_type);
CREATE INDEX ix_customer_company_name ON kiv_customer (company_name, customer_type);
CREATE INDEX ix_customer_zip ON kiv_customer (Zip);
CREATE INDEX ix_customer_household ON kiv_customer (household_no);
CREATE INDEX ix_customer_work_phone ON kiv_customer (work_phone);
CREATE INDEX ix_customer_cell_phone ON kiv_customer (cell_phone);
CREATE INDEX ix_customer_account ON kiv_customer (account_id);

CREATE TABLE kiv_address (
  address_no INTEGER PRIMARY KEY,
  address_type VARCHAR(20),
  Name VARCHAR(80),
  Address_1 VARCHAR(60),
  Address_2 VARCHAR(60),
  City VARCHAR(40),
  State VARCHAR(20),
  Zip VARCHAR(15) COLLATE NOCASE,
  Country_ID VARCHAR(10),
  Phone VARCHAR(20),
  Fax VARCHAR(20)
);
CREATE INDEX ix_address_zip ON kiv_address (Zip);
CREATE INDEX ix_address_phone ON kiv_address (Phone);

-- The household primary's rows are shared by every member of the household.
CREATE TABLE kiv_customer_address (
  customer_no INTEGER NOT NULL,
  address_no INTEGER NOT NULL,
  address_type VARCHAR(20),
  primary_address BIT NOT NULL DEFAULT 0,
  PRIMARY KEY (customer_no, address_no)
);
CREATE INDEX ix_customer_address_address ON kiv_customer_address (address_no);

-- Side records
CREATE TABLE kiv_customer_setting (
  customer_no INTEGER PRIMARY KEY,
  guest_ability VARCHAR(10),
  guest_shoe_size FLOAT,
  guest_height_range SMALLINT,
  guest_weight_range SMALLINT
);

CREATE TABLE kiv_customer_alert (
  customer_no INTEGER PRIMARY KEY,
  child_full_name VARCHAR(100),
  cell_phone_contact VARCHAR(20),
  responsible_adult_1_name VARCHAR(100),
  responsible_adult_2_name VARCHAR(100),
  Allergies VARCHAR(255),
  Medications VARCHAR(255),
  special_needs VARCHAR(255)
);

-- Employer links are read from here by fiscal year; the employee link itself is written to
-- kiv_customer_rel with rel_type_id 'EMPLOYEE'.
CREATE TABLE kiv_customer_employer (
  customer_no INTEGER NOT NULL,
  fiscal_year INTEGER NOT NULL,
  employer_customer_no INTEGER NOT NULL,
  is_active BIT,
  comment_note VARCHAR(255),
  PRIMARY KEY (customer_no, fiscal_year, employer_customer_no)
);
CREATE INDEX ix_customer_employer_employer ON kiv_customer_employer (employer_customer_no, fiscal_year);

CREATE TABLE kiv_customer_rel (
  parent_customer_no INTEGER NOT NULL,
  child_customer_no INTEGER NOT NULL,
  rel_type_id VARCHAR(20) NOT NULL
);
CREATE INDEX ix_customer_rel_parent ON kiv_customer_rel (parent_customer_no);
CREATE INDEX ix_customer_rel_child ON kiv_customer_rel (child_customer_no);

CREATE TABLE kiv_images (
  customer_no INTEGER NOT NULL,
  image_no INTEGER NOT NULL,
  image_path VARCHAR(255),
  image_type VARCHAR(20),
  current_photo BIT NOT NULL DEFAULT 0,
  image_blob BLOB,
  PRIMARY KEY (customer_no, image_no)
);

CREATE TABLE kiv_customer_group (customer_group_id VARCHAR(20) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_customer_group_member (
  customer_group_id VARCHAR(20) NOT NULL,
  customer_no INTEGER NOT NULL,
  PRIMARY KEY (customer_group_id, customer_no)
);
CREATE INDEX ix_group_member_customer ON kiv_customer_group_member (customer_no);

CREATE TABLE kiv_club (club_id VARCHAR(20) PRIMARY KEY, Description VARCHAR(60));
CREATE TABLE kiv_club_member (
  club_id VARCHAR(20) NOT NULL,
  customer_no INTEGER NOT NULL,
  member_id VARCHAR(20) COLLATE NOCASE,
  is_active BIT NOT NULL DEFAULT 1,
  join_date DATETIME,
  PRIMARY KEY (club_id, customer_no)
);
CREATE INDEX ix_club_member_customer ON kiv_club_member (customer_no);
CREATE INDEX ix_club_member_member_id ON kiv_club_member (member_id);

-- Site columns follow the five system columns; the editor shows whatever columns exist,
-- so a site adds one with ALTER TABLE and nothing else. The demo site keeps one column of
-- each kind the editor types: text, whole numbers, a one-byte flag, dates, money, bits,
-- exact numerics (a precision-1 flag, decimals, large integers) and long text.
CREATE TABLE kiv_customer_profile (
  CUSTOMER_NO INTEGER PRIMARY KEY,
  CREATED_BY VARCHAR(20),
  CREATE_DATE DATETIME,
  MODIFIED_BY VARCHAR(20),
  MODIFIED_DATE DATETIME,
  SKI_LEVEL_CODE CHAR(2),
  PREFERRED_LIFT VARCHAR(30),
  BOOT_SOLE_LENGTH INTEGER,
  WAIVER_SIGNED TINYINT,
  WAIVER_DATE DATE,
  SEASON_PASS_CREDIT MONEY,
  NEWSLETTER BIT,
  VIP_GUEST NUMERIC(1,0),
  SKI_LENGTH_CM NUMERIC(5,1),
  LIFETIME_VISITS NUMERIC(9,0),
  LAST_LESSON_DATE DATETIME,
  SPECIAL_REQUESTS TEXT
);

-- Cards on file: the full number and the track data are never stored.
CREATE TABLE kiv_customer_cc (
  customer_no INTEGER NOT NULL,
  card_seq_no INTEGER NOT NULL,
  x_card_no VARCHAR(25),
  last_four CHAR(4),
  exp_date VARCHAR(7),
  Zip VARCHAR(15),
  Address VARCHAR(60),
  pay_method_id VARCHAR(10),
  is_active BIT NOT NULL DEFAULT 1,
  created_by VARCHAR(20),
  create_date DATETIME,
  modified_by VARCHAR(20),
  modified_on DATETIME,
  PRIMARY KEY (customer_no, card_seq_no)
);

CREATE TABLE kiv_account (
  account_id VARCHAR(20) PRIMARY KEY,
  Description VARCHAR(60),
  account_limit MONEY,
  account_balance MONEY,
  is_active BIT NOT NULL DEFAULT 1,
  -- The customer the account was opened for.
  customer_no INTEGER
);

-- Activity
CREATE TABLE kiv_customer_forecast (
  forecast_no INTEGER PRIMARY KEY,
  customer_no INTEGER NOT NULL,
  fc_date_entered DATETIME,
  fc_arrival_date DATETIME,
  fc_depart_date DATETIME,
  fc_nights SMALLINT,
  fc_people SMALLINT,
  fc_days SMALLINT,
  fc_rate MONEY,
  fc_rate_after_commission FLOAT,
  fc_early_booking_offer BIT,
  fc_origin VARCHAR(10),
  fc_country VARCHAR(10),
  fc_category VARCHAR(10),
  fc_source VARCHAR(40),
  fc_manager VARCHAR(40),
  fc_manager_2nd VARCHAR(40),
  fc_property INTEGER,
  fc_segment VARCHAR(10),
  fc_type VARCHAR(10),
  fc_location VARCHAR(10),
  comment_note TEXT,
  fc_ticket_instructions TEXT,
  fc_ss_instructions TEXT,
  fc_activities_instructions TEXT,
  fc_group_profile TEXT,
  fc_confidential_comments TEXT,
  fc_last_edited_by VARCHAR(20),
  fc_last_edited_on DATETIME
);
CREATE INDEX ix_forecast_customer ON kiv_customer_forecast (customer_no);

CREATE TABLE kiv_sales_order (
  salesorder_no INTEGER PRIMARY KEY,
  customer_no INTEGER NOT NULL,
  for_customer_no INTEGER,
  forecast_no INTEGER,
  order_date DATETIME,
  status_id VARCHAR(10),
  total_amount MONEY,
  is_invoiced BIT NOT NULL DEFAULT 0,
  comment_note TEXT
);
CREATE INDEX ix_sales_order_customer ON kiv_sales_order (customer_no);
CREATE INDEX ix_sales_order_forecast ON kiv_sales_order (forecast_no);

CREATE TABLE kiv_sales_order_line (
  salesorder_no INTEGER NOT NULL,
  line_no INTEGER NOT NULL,
  item_id VARCHAR(20),
  description VARCHAR(80),
  quantity FLOAT,
  price MONEY,
  amount MONEY,
  PRIMARY KEY (salesorder_no, line_no)
);

CREATE TABLE kiv_invoice (
  invoice_no INTEGER PRIMARY KEY,
  salesorder_no INTEGER,
  customer_no INTEGER NOT NULL,
  invoice_date DATETIME,
  amount MONEY,
  balance MONEY
);
CREATE INDEX ix_invoice_customer ON kiv_invoice (customer_no);

CREATE TABLE kiv_reservation (
  reservation_no INTEGER PRIMARY KEY,
  customer_no INTEGER NOT NULL,
  booking_id VARCHAR(20),
  salesorder_no INTEGER,
  arrival_date DATETIME,
  departure_date DATETIME,
  status_id VARCHAR(10),
  description VARCHAR(80)
);
CREATE INDEX ix_reservation_customer ON kiv_reservation (customer_no);
CREATE INDEX ix_reservation_booking ON kiv_reservation (booking_id);

CREATE TABLE kiv_access_product (
  access_no INTEGER PRIMARY KEY,
  customer_no INTEGER NOT NULL,
  salesorder_no INTEGER,
  description VARCHAR(80),
  valid_from DATETIME,
  valid_to DATETIME,
  status_id VARCHAR(10)
);
CREATE INDEX ix_access_product_customer ON kiv_access_product (customer_no);

CREATE TABLE kiv_will_call (
  will_call_no INTEGER PRIMARY KEY,
  customer_no INTEGER NOT NULL,
  access_no INTEGER,
  salesorder_no INTEGER,
  long_description VARCHAR(80),
  valid_date DATETIME,
  status_id VARCHAR(10),
  dtm_printed DATETIME,
  kiv_user_printed VARCHAR(20)
);
CREATE INDEX ix_will_call_customer ON kiv_will_call (customer_no);

-- Users, rights, settings and logs
CREATE TABLE kiv_user (
  user_id VARCHAR(20) PRIMARY KEY COLLATE NOCASE,
  full_name VARCHAR(60),
  -- A salted password hash (never the password itself); a user without one cannot read cards.
  password_hash VARCHAR(128),
  is_active BIT NOT NULL DEFAULT 1
);

CREATE TABLE kiv_user_permission (
  user_id VARCHAR(20) NOT NULL COLLATE NOCASE,
  task_code VARCHAR(20) NOT NULL COLLATE NOCASE,
  PRIMARY KEY (user_id, task_code)
);

CREATE TABLE kiv_user_setting (
  user_id VARCHAR(20) NOT NULL COLLATE NOCASE,
  app_name VARCHAR(40) NOT NULL COLLATE NOCASE,
  section VARCHAR(80) NOT NULL COLLATE NOCASE,
  setting_key VARCHAR(80) NOT NULL COLLATE NOCASE,
  setting_value TEXT,
  PRIMARY KEY (user_id, app_name, section, setting_key)
);

CREATE TABLE kiv_activity_log (
  activity_no INTEGER PRIMARY KEY,
  logged_at DATETIME NOT NULL,
  user_id VARCHAR(20),
  task_code VARCHAR(20),
  screen VARCHAR(40),
  detail TEXT
);

CREATE TABLE kiv_error_log (
  error_log_no INTEGER PRIMARY KEY,
  logged_at DATETIME NOT NULL,
  user_id VARCHAR(20),
  error_number INTEGER,
  source VARCHAR(255),
  description TEXT,
  extra TEXT
);

INSERT INTO kiv_sequence (sequence_name, last_no) VALUES
  ('seq_customer_no', 0), ('seq_address_no', 0), ('seq_forecast_no', 0), ('seq_salesorder_no', 0);

-- Group forecasts and rental contracts: the report definitions Report Maintenance keeps
-- (a key, the queries the document is filled from, and its HTML template) and the rental
-- contracts with one line per piece of equipment.
CREATE TABLE kiv_report_definition (
  report_key VARCHAR(20) PRIMARY KEY,
  report_name VARCHAR(60) NOT NULL,
  file_name VARCHAR(80),
  parameter_names VARCHAR(200),
  header_sql TEXT NOT NULL,
  line_sql TEXT,
  template TEXT NOT NULL
);

CREATE TABLE kiv_rental_contract (
  contract_no INTEGER PRIMARY KEY,
  customer_no INTEGER NOT NULL,
  contract_date DATETIME,
  location_id VARCHAR(10),
  voucher_no VARCHAR(20),
  status_id VARCHAR(10),
  created_by VARCHAR(20)
);
CREATE INDEX ix_rental_contract_customer ON kiv_rental_contract (customer_no);

CREATE TABLE kiv_rental_contract_line (
  contract_no INTEGER NOT NULL,
  line_no INTEGER NOT NULL,
  description VARCHAR(80),
  serial_no VARCHAR(30),
  dtm_equip_out DATETIME,
  dtm_return DATETIME,
  rent_start DATETIME,
  rent_end DATETIME,
  days SMALLINT,
  daily_rate MONEY,
  amount MONEY,
  return_location_id VARCHAR(10),
  din_setting VARCHAR(10),
  binding VARCHAR(40),
  status_id VARCHAR(10),
  PRIMARY KEY (contract_no, line_no)
);

-- Reservations, access products, history log and will calls: the side of each
-- reservation the activity pages show, its change log, the items and uses of access
-- products, their lock state, and the register of each workstation.
CREATE TABLE kiv_reservation_detail (
  reservation_no INTEGER PRIMARY KEY,
  res_header_no INTEGER NOT NULL,
  resource_description VARCHAR(60),
  mountain_id VARCHAR(10),
  loc_description VARCHAR(60),
  employee_name VARCHAR(60),
  requested BIT NOT NULL DEFAULT 0,
  salesorder_line_no INTEGER,
  -- Only the masked number and the last four digits of the guaranteeing card.
  x_card_no VARCHAR(20),
  last_four VARCHAR(4),
  exp_date VARCHAR(10),
  lodge_customer_no INTEGER,
  phone VARCHAR(30),
  coordinator_comment TEXT,
  comment_note TEXT
);
CREATE INDEX ix_reservation_detail_header ON kiv_reservation_detail (res_header_no);

CREATE TABLE kiv_reservation_log (
  log_no INTEGER PRIMARY KEY,
  reservation_no INTEGER NOT NULL,
  log_datetime DATETIME NOT NULL,
  kiv_user VARCHAR(20),
  res_start DATETIME,
  status_id VARCHAR(10),
  resource_description VARCHAR(60),
  mountain_id VARCHAR(10),
  loc_description VARCHAR(60),
  employee_name VARCHAR(60),
  requested BIT NOT NULL DEFAULT 0,
  salesorder_no INTEGER,
  salesorder_line_no INTEGER,
  x_card_no VARCHAR(20),
  last_four VARCHAR(4),
  exp_date VARCHAR(10),
  lodge_customer_no INTEGER,
  phone VARCHAR(30),
  coordinator_comment TEXT,
  comment_note TEXT
);
CREATE INDEX ix_reservation_log_reservation ON kiv_reservation_log (reservation_no, log_no);

CREATE TABLE kiv_access_item (
  access_no INTEGER NOT NULL,
  seq_no INTEGER NOT NULL,
  salesorder_no INTEGER,
  unit_id VARCHAR(20),
  long_description VARCHAR(80),
  is_active BIT NOT NULL DEFAULT 1,
  units_sold INTEGER NOT NULL DEFAULT 0,
  units_refunded INTEGER NOT NULL DEFAULT 0,
  units_used INTEGER NOT NULL DEFAULT 0,
  units_available INTEGER NOT NULL DEFAULT 0,
  sales_amount MONEY,
  refund_amount MONEY,
  value_amount MONEY,
  trans_type_id VARCHAR(20),
  PRIMARY KEY (access_no, seq_no)
);

-- A product without a row here is unlocked.
CREATE TABLE kiv_access_lock (
  access_no INTEGER PRIMARY KEY,
  is_locked BIT NOT NULL DEFAULT 0,
  message VARCHAR(255),
  changed_by VARCHAR(20),
  changed_on DATETIME,
  computer VARCHAR(40)
);

CREATE TABLE kiv_access_history (
  history_no INTEGER PRIMARY KEY,
  customer_no INTEGER NOT NULL,
  access_no INTEGER NOT NULL,
  log_datetime DATETIME NOT NULL,
  control_id VARCHAR(20),
  trans_type_id VARCHAR(20),
  status_id VARCHAR(10),
  units INTEGER,
  post_amount MONEY,
  response_type VARCHAR(10),
  response_text VARCHAR(80)
);
CREATE INDEX ix_access_history_customer ON kiv_access_history (customer_no, log_datetime);

-- The register of each workstation, by the computer name its connection reports; a
-- workstation without a row has no register.
CREATE TABLE kiv_register_station (
  computer VARCHAR(40) PRIMARY KEY COLLATE NOCASE,
  register_id VARCHAR(20),
  is_installed BIT NOT NULL DEFAULT 0,
  is_cashed_in BIT NOT NULL DEFAULT 0,
  control_no INTEGER NOT NULL DEFAULT 0
);

-- Money: the lines and payments of invoices. A payment is taken at a register within a
-- control (a cashier's shift), with a card on file, on a house account or otherwise.
CREATE TABLE kiv_invoice_line (
  invoice_no INTEGER NOT NULL,
  line_no INTEGER NOT NULL,
  line_date DATETIME,
  customer_no INTEGER,
  salesorder_no INTEGER,
  so_line_no INTEGER,
  item_id VARCHAR(20),
  long_description VARCHAR(80),
  qty FLOAT,
  unit_qty FLOAT,
  unit_id VARCHAR(10),
  gross_unit_price MONEY,
  unit_price MONEY,
  unit_commission MONEY,
  unit_discount MONEY,
  line_tax MONEY,
  linenet MONEY,
  season_no INTEGER,
  discount_id VARCHAR(20),
  Refundable BIT NOT NULL DEFAULT 1,
  kiv_user VARCHAR(20),
  comment_note TEXT,
  PRIMARY KEY (invoice_no, line_no)
);
CREATE INDEX ix_invoice_line_order ON kiv_invoice_line (salesorder_no, so_line_no);

CREATE TABLE kiv_payment (
  payment_no INTEGER PRIMARY KEY,
  invoice_no INTEGER NOT NULL,
  customer_no INTEGER,
  register_id VARCHAR(10),
  control_no INTEGER,
  audited BIT NOT NULL DEFAULT 0,
  payment_date DATETIME,
  pay_method_id VARCHAR(10),
  pay_action_id VARCHAR(4),
  Amount MONEY,
  account_id VARCHAR(20),
  card_customer_no INTEGER,
  card_seq_no INTEGER,
  authorizer VARCHAR(40),
  comment_note TEXT,
  kiv_user VARCHAR(20)
);
CREATE INDEX ix_payment_invoice ON kiv_payment (invoice_no);
CREATE INDEX ix_payment_card ON kiv_payment (card_customer_no, card_seq_no);
CREATE INDEX ix_payment_account ON kiv_payment (account_id);

PRAGMA user_version = 3;
