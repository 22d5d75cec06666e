-- fondarix_sys: what all centres share. Text columns in cp1250 (the database default).

CREATE TABLE sys_users (
  _key INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  login VARCHAR(50) NULL,
  password VARCHAR(50) COLLATE cp1250_bin NULL,   -- compared as stored: letter case counts
  prijmeni VARCHAR(60) NULL,
  jmeno VARCHAR(60) NULL,
  titul VARCHAR(30) NULL,
  typ SMALLINT NULL,
  filtr_grant TEXT NULL,
  code_stredisko VARCHAR(20) NULL,
  screen VARCHAR(20) NULL,
  os VARCHAR(120) NULL,
  version VARCHAR(20) NULL,
  last_login VARCHAR(40) NULL
) ENGINE=InnoDB;

CREATE TABLE sys_users_print (
  login VARCHAR(50) NULL,
  param_1 VARCHAR(10) NULL,
  param_2 VARCHAR(10) NULL,
  param_3 VARCHAR(10) NULL,
  param_4 VARCHAR(10) NULL,
  param_5 VARCHAR(10) NULL,
  KEY (login)
) ENGINE=InnoDB;

CREATE TABLE sys_db_kvl (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  code_stredisko VARCHAR(20) NULL,
  name_stredisko VARCHAR(100) NULL,
  mysql_db VARCHAR(64) NULL,
  ip_pc VARCHAR(40) NULL,
  ip_server VARCHAR(40) NULL,
  cesta VARCHAR(255) NULL,
  lekarna TINYINT NOT NULL DEFAULT 0   -- the pharmacy's row: not a centre of the order archive
) ENGINE=InnoDB;

CREATE TABLE sys_nastaveni (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Firma VARCHAR(150) NULL,
  Adresa VARCHAR(150) NULL,
  PSC VARCHAR(20) NULL,
  Mesto VARCHAR(80) NULL,
  ICO VARCHAR(20) NULL,
  DIC VARCHAR(20) NULL,
  `Cislo uctu` VARCHAR(40) NULL,
  `Nazev banky` VARCHAR(100) NULL,
  `Cislo uctu_2` VARCHAR(40) NULL,
  newdate_ucet VARCHAR(20) NULL
) ENGINE=InnoDB;

CREATE TABLE sys_nastaveniobj (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Vyrizuje VARCHAR(100) NULL,
  Telefon VARCHAR(40) NULL,
  Linka VARCHAR(20) NULL,
  email VARCHAR(100) NULL
) ENGINE=InnoDB;

CREATE TABLE sys_prikazce (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Jmeno VARCHAR(100) NULL
) ENGINE=InnoDB;

CREATE TABLE sys_spravcerozp (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Jmeno VARCHAR(100) NULL
) ENGINE=InnoDB;

-- Orders: the payment sources offered on the entry screens ("Hrazeno z").
CREATE TABLE sys_hrazeno (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Typ VARCHAR(100) NULL
) ENGINE=InnoDB;

CREATE TABLE SYS_PRAVA (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Jmeno VARCHAR(100) NULL
) ENGINE=InnoDB;

-- Footers and logo of the order forms, kept per user and for the institution.
CREATE TABLE sys_paticky_html (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  typ VARCHAR(10) NULL,
  login VARCHAR(50) NULL,
  html MEDIUMTEXT NULL
) ENGINE=InnoDB;

CREATE TABLE sys_paticky_obrazky (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  typ VARCHAR(10) NULL,
  login VARCHAR(50) NULL,
  filename VARCHAR(255) NULL,
  oleObrazek LONGBLOB NULL
) ENGINE=InnoDB;

CREATE TABLE sys_logo_kvl (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  typ INT NULL,
  filename VARCHAR(255) NULL,
  oleObrazek LONGBLOB NULL
) ENGINE=InnoDB;

-- Protocols: the kinds of protocol and the forms the users design for them.
-- (The grant documents table of the same name lives in fondarix_granty.)
CREATE TABLE documents_prot (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  name VARCHAR(100) NULL
) ENGINE=InnoDB;

CREATE TABLE documents (
  `key` INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  id INT NULL,                -- the form's id; protocols and fields refer to it
  name VARCHAR(150) NULL,
  form_param TEXT NULL,
  KEY (id)
) ENGINE=InnoDB;

CREATE TABLE formulars (
  document INT NOT NULL,      -- documents.id of the owning form
  `key` INT NOT NULL,         -- the field's key within its form
  id INT NULL,
  type_field VARCHAR(10) NULL,
  razeni INT NULL,
  param_field TEXT NULL,
  pac_field VARCHAR(64) NULL,
  PRIMARY KEY (document, `key`)
) ENGINE=InnoDB;

CREATE TABLE typefields (
  type INT NOT NULL PRIMARY KEY,
  name VARCHAR(60) NULL
) ENGINE=InnoDB;

CREATE TABLE lists (
  id INT NOT NULL,
  text VARCHAR(255) NULL,
  KEY (id)
) ENGINE=InnoDB;

INSERT INTO typefields (type, name) VALUES (1, 'LABEL'), (2, 'TEXT'), (3, 'TEXTBOX'), (4, 'COMBO');

-- Stock and firms: units, VAT rates, mail contacts (passwords kept scrambled).
CREATE TABLE sys_MIRA (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Nazev VARCHAR(40) NULL
) ENGINE=InnoDB;

CREATE TABLE sys_DPH (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Nazev VARCHAR(20) NULL
) ENGINE=InnoDB;

CREATE TABLE sys_kontakty (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Email VARCHAR(150) NULL,
  Heslo VARCHAR(600) NULL,
  Param1 VARCHAR(150) NULL,
  Param2 VARCHAR(150) NULL,
  User VARCHAR(50) NULL,
  KEY (User)
) ENGINE=InnoDB;
