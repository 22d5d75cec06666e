-- A centre database: stock, firms, orders, patients. Tables come with their subsystems.
SELECT 1;
