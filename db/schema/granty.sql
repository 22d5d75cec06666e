-- fondarix_granty: grant accounting. Text columns in cp1250 (the database default).
-- Money is stored as text with a decimal comma ("1234,50"), never summed in SQL.

CREATE TABLE GrantyPlan (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  _grant VARCHAR(20) NULL,
  Castka1 VARCHAR(30) NULL,
  Poskytnute VARCHAR(30) NULL,
  Castka2 VARCHAR(150) NULL,
  Castka3 VARCHAR(30) NULL,
  zahajeni VARCHAR(30) NULL,
  ukonceni VARCHAR(30) NULL,
  cislo VARCHAR(60) NULL,
  stredisko VARCHAR(100) NULL,
  agentura VARCHAR(150) NULL,
  archiv VARCHAR(5) NULL,
  KEY (_grant),
  KEY (stredisko, _grant)
) ENGINE=InnoDB;

CREATE TABLE memImport (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  UCET VARCHAR(60) NULL,
  NAZEV VARCHAR(200) NULL,
  `GRANT` VARCHAR(20) NULL,
  CASTKA VARCHAR(30) NULL,
  KEY (`GRANT`, UCET)
) ENGINE=InnoDB;

CREATE TABLE GrantTabl_main (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Ucet VARCHAR(60) NULL,
  Nazev VARCHAR(200) NULL,
  Castka VARCHAR(30) NULL,
  Castka_import VARCHAR(30) NULL,
  Castka_zustatek VARCHAR(30) NULL,
  Procent VARCHAR(30) NULL,
  KEY (`Grant`, Ucet)
) ENGINE=InnoDB;

CREATE TABLE Grant_devize_1 (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Ucet VARCHAR(60) NULL,
  Nazev VARCHAR(200) NULL,
  Castka VARCHAR(30) NULL,
  KEY (`Grant`, Ucet)
) ENGINE=InnoDB;

CREATE TABLE Grant_devize_2 (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Ucet VARCHAR(60) NULL,
  Nazev VARCHAR(200) NULL,
  Castka VARCHAR(30) NULL,
  KEY (`Grant`, Ucet)
) ENGINE=InnoDB;

CREATE TABLE Grant_devize_3 (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Ucet VARCHAR(60) NULL,
  Nazev VARCHAR(200) NULL,
  Castka VARCHAR(30) NULL,
  KEY (`Grant`, Ucet)
) ENGINE=InnoDB;

-- Cleared with the account tree; nothing reads it.
CREATE TABLE GrantySeznam (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Ucet VARCHAR(60) NULL,
  Nazev VARCHAR(200) NULL,
  Castka VARCHAR(30) NULL
) ENGINE=InnoDB;

-- Ucet holds a code filter such as "501*,502*,-502100", hence TEXT.
CREATE TABLE SkupUctu (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Ucet TEXT NULL,
  Nazev VARCHAR(150) NULL,
  Castka VARCHAR(30) NULL,
  Zustatek VARCHAR(30) NULL
) ENGINE=InnoDB;

CREATE TABLE SkupUctuGrant (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Ucet TEXT NULL,
  Nazev VARCHAR(150) NULL,
  Castka_plan VARCHAR(30) NULL,
  Castka_cerpani VARCHAR(30) NULL,
  Zustatek VARCHAR(30) NULL,
  Procent VARCHAR(30) NULL,
  Rezerv1 VARCHAR(100) NULL,
  Rezerv2 VARCHAR(100) NULL,
  KEY (`Grant`, Nazev)
) ENGINE=InnoDB;

CREATE TABLE ImportUctyCastky (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Datum VARCHAR(20) NULL,
  Doklad VARCHAR(60) NULL,
  `Text` VARCHAR(255) NULL,
  Castka VARCHAR(30) NULL,
  Ucet VARCHAR(60) NULL,
  `Grant` VARCHAR(20) NULL,
  NazevUctu VARCHAR(200) NULL,
  `MD/DAL` VARCHAR(5) NULL,
  KEY (`Grant`, Ucet),
  KEY (Datum)
) ENGINE=InnoDB;

CREATE TABLE RozpocetFakt (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  `Grant` VARCHAR(20) NULL,
  Ucet VARCHAR(60) NULL,
  `Text` VARCHAR(255) NULL,
  Castka VARCHAR(30) NULL,
  Doklad VARCHAR(60) NULL,
  `MD/DAL` VARCHAR(5) NULL,
  NazevUctu VARCHAR(200) NULL,
  Datum VARCHAR(20) NULL,
  KEY (`Grant`, Ucet)
) ENGINE=InnoDB;

-- id_grant identifies the document, not the grant; oleWord holds the zip archive.
CREATE TABLE documents (
  id_grant INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  _grant VARCHAR(20) NULL,
  `file` VARCHAR(255) NULL,
  `size` BIGINT NULL DEFAULT 0,
  oleWord LONGBLOB NULL,
  param1 VARCHAR(255) NULL,
  param2 VARCHAR(40) NULL,
  KEY (_grant)
) ENGINE=InnoDB;
