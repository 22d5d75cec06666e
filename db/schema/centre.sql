-- A centre database: stock, firms, orders, patients. Tables come with their subsystems.
SELECT 1;

-- Orders: one row is the whole order (head, eight goods lines, money, dates, footer, body);
-- the state is derived from the columns each time. Free texts are long texts, so whatever a
-- clerk types is stored as typed.
CREATE TABLE archobj (
  nom INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  cis_obj VARCHAR(40) NULL,
  Cis_global TEXT NULL,
  Firma TEXT NULL, Pobocka TEXT NULL, Adres TEXT NULL, PSC TEXT NULL, Mesto TEXT NULL,
  Tel TEXT NULL, Fax TEXT NULL,
  -- Compared byte for byte, as the archive's year filter compares it, so the index serves it.
  Dat_obj VARCHAR(40) COLLATE cp1250_nopad_bin NULL,
  Dat_vyriz TEXT NULL,
  Autor TEXT NULL,
  Castka TEXT NULL,
  Typ VARCHAR(10) NULL,
  `Text` TEXT NULL,
  Text1 TEXT NULL,
  Prikazce TEXT NULL,
  SpravceRozp TEXT NULL,
  LineRec1 TEXT NULL, Poc1 TEXT NULL, LineRec2 TEXT NULL, Poc2 TEXT NULL,
  LineRec3 TEXT NULL, Poc3 TEXT NULL, LineRec4 TEXT NULL, Poc4 TEXT NULL,
  LineRec5 TEXT NULL, Poc5 TEXT NULL, LineRec6 TEXT NULL, Poc6 TEXT NULL,
  LineRec7 TEXT NULL, Poc7 TEXT NULL, LineRec8 TEXT NULL, Poc8 TEXT NULL,
  LineRec9 TEXT NULL, Poc9 TEXT NULL, LineRec10 TEXT NULL, poc10 TEXT NULL,
  paticka VARCHAR(10) NULL,
  file_paticka MEDIUMTEXT NULL,
  file_html_text MEDIUMTEXT NULL,
  objWF TEXT NULL,
  objZauct TEXT NULL,
  coml INT NULL,
  zkatalog TEXT NULL,
  `Grant` TEXT NULL,
  -- The row colour worked out by the server where the texts are plain (1 yellow, 2 green,
  -- 3 red, 4 grey, 0 white), 9 where the program must decide: a status list reads only the
  -- rows of its colour and the undecided ones instead of the whole table.
  stav TINYINT AS (CASE
    WHEN CAST(CONCAT_WS('#', Castka, Dat_vyriz, objWF, Cis_global) AS BINARY) REGEXP '[\\x00-\\x1f\\x7f\\xa0]' THEN 9
    WHEN Castka IS NULL THEN
      CASE WHEN CHAR_LENGTH(TRIM(IFNULL(Dat_vyriz, ''))) > 0 THEN 2
           WHEN CHAR_LENGTH(TRIM(IFNULL(objWF, ''))) > 0 THEN 1 ELSE 0 END
    WHEN CHAR_LENGTH(SUBSTRING_INDEX(TRIM(Castka), '#', 2)) > 60
      OR SUBSTRING_INDEX(TRIM(Castka), '#', 1) NOT REGEXP '^ *[-+]?[0-9 ]*([,.][0-9 ]*)?$'
      OR IF(LOCATE('#', TRIM(Castka)) = 0, '', SUBSTRING_INDEX(SUBSTRING_INDEX(TRIM(Castka), '#', 2), '#', -1))
         NOT REGEXP '^ *[-+]?[0-9 ]*([,.][0-9 ]*)?$' THEN 9
    WHEN CHAR_LENGTH(TRIM(IFNULL(Cis_global, ''))) > 0
      AND IF(LOCATE('#', TRIM(Castka)) = 0, '', SUBSTRING_INDEX(SUBSTRING_INDEX(TRIM(Castka), '#', 2), '#', -1))
          REGEXP '[1-9]' THEN 4
    WHEN SUBSTRING_INDEX(TRIM(Castka), '#', 1) REGEXP '[1-9]' THEN
      IF(IF(LOCATE('#', TRIM(Castka)) = 0, '', SUBSTRING_INDEX(SUBSTRING_INDEX(TRIM(Castka), '#', 2), '#', -1))
         REGEXP '[1-9]', 0, 3)
    WHEN CHAR_LENGTH(TRIM(IFNULL(Dat_vyriz, ''))) > 0 THEN 2
    WHEN CHAR_LENGTH(TRIM(IFNULL(objWF, ''))) > 0 THEN 1
    ELSE 0 END) PERSISTENT,
  -- What a status list reads besides the colour, kept short so the list comes from the index
  -- objstav alone: the first nine characters of the texts its filter compares (a cut text is
  -- nine long, so it equals no literal of up to eight, as the whole text does not), the two
  -- amounts of Castka for the sums (61 long: cut, the program reads the row) and whether the
  -- order is on several grants (a comma in Grant), which leaves it out of the sums.
  castka_f VARCHAR(9) AS (LEFT(Castka, 9)) PERSISTENT,
  objwf_f VARCHAR(9) AS (LEFT(objWF, 9)) PERSISTENT,
  dat_vyriz_f VARCHAR(9) AS (LEFT(Dat_vyriz, 9)) PERSISTENT,
  objzauct_f VARCHAR(9) AS (LEFT(objZauct, 9)) PERSISTENT,
  castka_sum VARCHAR(61) AS (LEFT(SUBSTRING_INDEX(Castka, '#', 2), 61)) PERSISTENT,
  grant_multi TINYINT AS (IFNULL(LOCATE(',', `Grant`) > 0, 0)) PERSISTENT,
  -- The list's order with the year it filters on, so a page is read from the index alone.
  KEY objlist (cis_obj, nom, Dat_obj),
  KEY (Dat_obj, cis_obj),
  KEY objstav (stav, cis_obj, nom, Dat_obj, coml, castka_f, objwf_f, dat_vyriz_f, objzauct_f, castka_sum, grant_multi)
) ENGINE=InnoDB;

-- The footer of each order as it was printed.
CREATE TABLE objedn_footer (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  cis_obj VARCHAR(40) NULL,
  id_typ VARCHAR(10) NULL,
  `text` MEDIUMTEXT NULL,
  KEY (cis_obj)
) ENGINE=InnoDB;

-- Protocols: the patient register and the saved protocols, each one row whose
-- columns hold parallel "~"-lists of the form's fields.
CREATE TABLE pacients (
  `key` INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  id INT NULL,
  prijmeni VARCHAR(60) NULL,
  jmeno VARCHAR(60) NULL,
  rc VARCHAR(20) NULL,
  prijmcislo VARCHAR(30) NULL,
  registraci DATE NULL,
  poznamka VARCHAR(255) NULL,
  datapacient TEXT NULL
) ENGINE=InnoDB;

CREATE TABLE archiv (
  `key` INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  id INT NULL,
  id_pac INT NULL,
  cislo_prot VARCHAR(30) NULL,
  date_create VARCHAR(20) NULL,
  `lock` TINYINT(1) NOT NULL DEFAULT 0,
  data_fields MEDIUMTEXT NULL,
  key_fields TEXT NULL,
  pozice_fields MEDIUMTEXT NULL,
  type_fields TEXT NULL,
  font_fields TEXT NULL,
  bold_fields TEXT NULL,
  kursiv_fields TEXT NULL,
  color_fields TEXT NULL,
  korekce_fields MEDIUMTEXT NULL,
  KEY (id_pac)
) ENGINE=InnoDB;

CREATE VIEW pacients_prot AS SELECT * FROM pacients;
CREATE VIEW archiv_prot AS SELECT * FROM archiv;

-- Stock and firms --------------------------------------------------------------------
-- The list of warehouses: the name a user gave, and the table the program made for it.
CREATE TABLE typ (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Typ VARCHAR(300) NULL,
  File VARCHAR(64) NULL,
  KEY (File)
) ENGINE=InnoDB;

-- The layout every warehouse copies (CREATE TABLE ... AS SELECT * FROM PLASTY), with
-- the key after TypBal2. Quantities are doubles: halves and tenths of a package occur.
CREATE TABLE PLASTY (
  Nazev VARCHAR(255) NULL,
  Katal VARCHAR(100) NULL,
  Prijem VARCHAR(40) NULL,
  Mira VARCHAR(40) NULL,
  CENA VARCHAR(40) NULL DEFAULT '0,00',
  Mena VARCHAR(10) NULL,
  DPH VARCHAR(20) NULL,
  Firma VARCHAR(150) NULL,
  Poznam VARCHAR(255) NULL,
  Kus_vy DOUBLE NULL,
  Mnoz_obj DOUBLE NULL,
  Kus_obj DOUBLE NULL,
  `GRANT` VARCHAR(40) NULL,
  DAT_OBJ DATE NULL,
  DAT_VYD DATE NULL,
  EXPIR DATE NULL,
  DAT_PRI DATE NULL,
  VYDEJ DOUBLE NULL,
  KUS_PR DOUBLE NULL,
  TypBal1 VARCHAR(40) NULL,
  TypBal2 VARCHAR(40) NULL,
  nom INT(11) UNSIGNED NOT NULL AUTO_INCREMENT PRIMARY KEY,
  ZKATALOG VARCHAR(100) NULL
) ENGINE=InnoDB;

-- The journal of issues from every warehouse of the centre. The keys are whole columns, so
-- that the issue archive finds a page in the journal's order from the key alone.
CREATE TABLE CHEM_VYD (
  id INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  NAM_CHIM VARCHAR(255) NULL,
  KATAL VARCHAR(100) NULL,
  KOMU VARCHAR(150) NULL,
  MIRA VARCHAR(40) NULL,
  DAT_VYD DATE NULL,
  KUS_VY VARCHAR(60) NULL,
  sklad VARCHAR(300) NULL,
  KEY (sklad, NAM_CHIM, KATAL),
  KEY (NAM_CHIM, KATAL)
) ENGINE=InnoDB;

-- The firm card file: one row per firm branch.
CREATE TABLE adrfirm (
  nom INT NOT NULL AUTO_INCREMENT PRIMARY KEY,
  Firma VARCHAR(150) NULL,
  Pobocka VARCHAR(150) NULL,
  Adres_1 VARCHAR(150) NULL,
  Adres_2 VARCHAR(150) NULL,
  PSC VARCHAR(10) NULL,
  Mesto VARCHAR(80) NULL,
  Fax VARCHAR(40) NULL,
  Email VARCHAR(100) NULL,
  HTTP VARCHAR(150) NULL,
  Tel VARCHAR(40) NULL,
  Tel2 VARCHAR(40) NULL,
  ICO VARCHAR(20) NULL,
  DIC VARCHAR(20) NULL,
  Bank VARCHAR(100) NULL,
  Ucet VARCHAR(40) NULL,
  DPH VARCHAR(20) NULL,
  Poznam VARCHAR(255) NULL,
  Jednat VARCHAR(100) NULL
) ENGINE=InnoDB;
