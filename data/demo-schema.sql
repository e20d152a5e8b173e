-- Tables of the demo database. Text columns compare without regard to case, as the host's
-- queries expect. Booleans hold -1 (True) and 0 (False). Dates are ISO text (yyyy-mm-dd).
-- Columns declared DATE or BOOLEAN come back from the host typed (a Date, True/False).

CREATE TABLE Listings (
    ListNum INTEGER PRIMARY KEY,
    LstStatus TEXT COLLATE NOCASE NOT NULL,
    ListAgentID TEXT COLLATE NOCASE,
    SaleAgentID TEXT COLLATE NOCASE,
    ListOfficeID TEXT COLLATE NOCASE,
    BoardId INTEGER,
    StreetNumber TEXT COLLATE NOCASE,
    StreetDirection TEXT COLLATE NOCASE,
    StreetName TEXT COLLATE NOCASE,
    AddressNumber INTEGER,
    OwnerName TEXT COLLATE NOCASE,
    City TEXT COLLATE NOCASE,
    State TEXT COLLATE NOCASE,
    Zip TEXT COLLATE NOCASE,
    Subdivision TEXT COLLATE NOCASE,
    ListPrice REAL,
    SalePrice REAL,
    Taxes REAL,
    Bedrooms INTEGER,
    Baths REAL,
    SqFt INTEGER,
    YearBuilt INTEGER,
    Garage INTEGER,
    Pool BOOLEAN,
    PropType TEXT COLLATE NOCASE,
    Style TEXT COLLATE NOCASE,
    Remarks TEXT COLLATE NOCASE,
    PrivateRemarks TEXT COLLATE NOCASE,
    ListDate DATE,
    SaleDate DATE
);

CREATE TABLE Photo (
    PhoListnum INTEGER PRIMARY KEY,
    PhotoVersion TEXT COLLATE NOCASE,
    PhotoCount INTEGER
);

CREATE TABLE Office (
    OffOfficeId TEXT COLLATE NOCASE PRIMARY KEY,
    OffName1 TEXT COLLATE NOCASE,
    offCompanyCode TEXT COLLATE NOCASE,
    OffAddress TEXT COLLATE NOCASE,
    OffCity TEXT COLLATE NOCASE,
    OffState TEXT COLLATE NOCASE,
    OffZip TEXT COLLATE NOCASE,
    OffPhone TEXT COLLATE NOCASE,
    OffEmail TEXT COLLATE NOCASE
);

CREATE TABLE Members (
    MemberId TEXT COLLATE NOCASE PRIMARY KEY,
    MemLastName TEXT COLLATE NOCASE,
    MemFirstName TEXT COLLATE NOCASE,
    MemMiddleInitial TEXT COLLATE NOCASE,
    MemOfficeID TEXT COLLATE NOCASE,
    MemTitle TEXT COLLATE NOCASE,
    MemPhone TEXT COLLATE NOCASE,
    MemEmail TEXT COLLATE NOCASE,
    MemLicense TEXT COLLATE NOCASE
);

CREATE TABLE TaxRolls (
    TaxId TEXT COLLATE NOCASE PRIMARY KEY,
    TaxOwnerName TEXT COLLATE NOCASE,
    TaxHouseNumber TEXT COLLATE NOCASE,
    TaxStreetDir TEXT COLLATE NOCASE,
    TaxStreetName TEXT COLLATE NOCASE,
    TaxAddrNumber INTEGER,
    TaxCity TEXT COLLATE NOCASE,
    TaxZip TEXT COLLATE NOCASE,
    TaxPropClass TEXT COLLATE NOCASE,
    TaxYear INTEGER,
    TaxLandValue REAL,
    TaxImprovementValue REAL,
    TaxAssessedValue REAL,
    TaxAmount REAL,
    TaxLegal TEXT COLLATE NOCASE
);

CREATE TABLE Rentals (
    Listnum INTEGER PRIMARY KEY,
    RntStatus TEXT COLLATE NOCASE,
    ListAgentID TEXT COLLATE NOCASE,
    ListOfficeID TEXT COLLATE NOCASE,
    StreetNumber TEXT COLLATE NOCASE,
    StreetDirection TEXT COLLATE NOCASE,
    StreetName TEXT COLLATE NOCASE,
    AddressNumber INTEGER,
    City TEXT COLLATE NOCASE,
    Zip TEXT COLLATE NOCASE,
    Rent REAL,
    Deposit REAL,
    Bedrooms INTEGER,
    Baths REAL,
    SqFt INTEGER,
    Furnished BOOLEAN,
    PetsAllowed BOOLEAN,
    AvailableDate DATE,
    Remarks TEXT COLLATE NOCASE
);

-- The field catalogue: one row per database kind, per field and per code.
CREATE TABLE DicKinds (
    Kind INTEGER PRIMARY KEY,
    TableName TEXT NOT NULL,
    KeyField TEXT NOT NULL,
    Version INTEGER NOT NULL
);

CREATE TABLE DicFields (
    Kind INTEGER NOT NULL,
    DicId INTEGER NOT NULL,
    FieldName TEXT NOT NULL,
    ColumnName TEXT NOT NULL,
    DataType INTEGER NOT NULL,
    CodeType INTEGER NOT NULL DEFAULT 0,
    FormatText TEXT NOT NULL DEFAULT '',
    GroupCode TEXT NOT NULL DEFAULT '',
    Listed INTEGER NOT NULL DEFAULT 1,
    Expression TEXT NOT NULL DEFAULT '',
    PRIMARY KEY (Kind, DicId)
);

CREATE TABLE DicCodes (
    Kind INTEGER NOT NULL,
    DicId INTEGER NOT NULL,
    Code TEXT NOT NULL,
    ShortText TEXT NOT NULL,
    LongText TEXT NOT NULL,
    SortOrder INTEGER NOT NULL,
    PRIMARY KEY (Kind, Code)
);
